// Kanvo_Geometry: the matrix operations and the one sine of the library.
#include "Kanvo_Geometry.h"

#include "Tov_Math.h"

const Kanvo_Vector2 Kanvo_Vector2::ZERO(0.0F, 0.0F);
const Kanvo_Vector2 Kanvo_Vector2::UNIT_X(1.0F, 0.0F);
const Kanvo_Vector2 Kanvo_Vector2::UNIT_Y(0.0F, 1.0F);

const Kanvo_Matrix2 Kanvo_Matrix2::IDENTITY(1.0F, 0.0F, 0.0F, 1.0F);

const Tov_Value     Kanvo_Matrix3::EPSILON = 1.0e-6F;
const Kanvo_Matrix3 Kanvo_Matrix3::ZERO(0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F);
const Kanvo_Matrix3 Kanvo_Matrix3::IDENTITY(1.0F, 0.0F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F, 0.0F, 1.0F);

namespace
{

//! Taylor series around 0, for |dX| <= pi / 4: the first term left out is below 1e-17.
double SinNearZero(double dX)
{
    const double dSquare = dX * dX;
    double       dSum    = 0.0;
    for (int iTerm = 17; iTerm >= 3; iTerm -= 2)
    {
        dSum = (1.0 + dSum) * -dSquare / static_cast<double>(iTerm * (iTerm - 1));
    }
    return dX * (1.0 + dSum);
}

double CosNearZero(double dX)
{
    const double dSquare = dX * dX;
    double       dSum    = 0.0;
    for (int iTerm = 16; iTerm >= 2; iTerm -= 2)
    {
        dSum = (1.0 + dSum) * -dSquare / static_cast<double>(iTerm * (iTerm - 1));
    }
    return 1.0 + dSum;
}

}  // namespace

void Kanvo_SinCosDegrees(Tov_Value vAngle, double& dSin, double& dCos)
{
    constexpr double dRadiansPerDegree = 3.14159265358979323846 / 180.0;

    // A float beyond 2^24 is a whole number; beyond 2^31 its remainder is still exact, but means nothing to a caller.
    const bool    bUsable  = vAngle > -2147483648.0F && vAngle < 2147483648.0F;
    const double  dAngle   = bUsable ? static_cast<double>(vAngle) : 0.0;
    const Tov_Int iDegrees = Tov_FltToInt(static_cast<Tov_Float>(dAngle));
    const Tov_Int iNearest = (iDegrees % 360 + (iDegrees < 0 ? -45 : 45)) / 90;  // quarter turns, to the nearest
    const double  dWithin  = static_cast<double>(iDegrees % 360 - iNearest * 90) + (dAngle - iDegrees);

    // Halfway between two quarter turns either may be the nearest: both give the same bits.
    constexpr double dDiagonal = 0.70710678118654752440;
    const bool       bDiagonal = dWithin == 45.0 || dWithin == -45.0;
    const double     dC        = bDiagonal ? dDiagonal : CosNearZero(dWithin * dRadiansPerDegree);
    const double dS = !bDiagonal ? SinNearZero(dWithin * dRadiansPerDegree) : dWithin > 0.0 ? dDiagonal : -dDiagonal;
    switch (static_cast<Tov_UInt>(iNearest) & 3U)
    {
    case 0:
        dSin = dS;
        dCos = dC;
        break;
    case 1:
        dSin = dC;
        dCos = -dS;
        break;
    case 2:
        dSin = -dS;
        dCos = -dC;
        break;
    default:
        dSin = -dC;
        dCos = dS;
        break;
    }
}

Kanvo_Matrix3 Kanvo_Matrix3::ScaleRotateMove(const Kanvo_Vector2& kScale, Tov_Value vAngle, const Kanvo_Vector2& kMove)
{
    double dSin = 0.0;
    double dCos = 1.0;
    Kanvo_SinCosDegrees(vAngle, dSin, dCos);
    const auto vSin = static_cast<Tov_Value>(dSin);
    const auto vCos = static_cast<Tov_Value>(dCos);
    return {vCos * kScale.x, -vSin * kScale.y, kMove.x, vSin * kScale.x, vCos * kScale.y, kMove.y, 0.0F, 0.0F, 1.0F};
}

Kanvo_Matrix3 Kanvo_Matrix3::operator*(const Kanvo_Matrix3& kOther) const
{
    Kanvo_Matrix3 kResult;
    for (int iRow = 0; iRow < 3; ++iRow)
    {
        for (int iColumn = 0; iColumn < 3; ++iColumn)
        {
            kResult[iRow][iColumn] = m_aafEntry[iRow][0] * kOther[0][iColumn] +
                                     m_aafEntry[iRow][1] * kOther[1][iColumn] +
                                     m_aafEntry[iRow][2] * kOther[2][iColumn];
        }
    }
    return kResult;
}

Kanvo_Vector3 Kanvo_Matrix3::operator*(const Kanvo_Vector3& kV) const
{
    return {m_aafEntry[0][0] * kV.x + m_aafEntry[0][1] * kV.y + m_aafEntry[0][2] * kV.z,
            m_aafEntry[1][0] * kV.x + m_aafEntry[1][1] * kV.y + m_aafEntry[1][2] * kV.z,
            m_aafEntry[2][0] * kV.x + m_aafEntry[2][1] * kV.y + m_aafEntry[2][2] * kV.z};
}

Kanvo_Vector2 Kanvo_Matrix3::TransformPoint(const Kanvo_Vector2& kPoint) const
{
    const Kanvo_Vector3 kResult = *this * Kanvo_Vector3(kPoint.x, kPoint.y, 1.0F);
    return {kResult.x, kResult.y};
}

Kanvo_Matrix3 Kanvo_Matrix3::Transpose() const
{
    const auto& a = m_aafEntry;
    return {a[0][0], a[1][0], a[2][0], a[0][1], a[1][1], a[2][1], a[0][2], a[1][2], a[2][2]};
}

Tov_Value Kanvo_Matrix3::Determinant() const
{
    const auto& a = m_aafEntry;
    return a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) + a[0][1] * (a[1][2] * a[2][0] - a[1][0] * a[2][2]) +
           a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
}

Tov_Bool Kanvo_Matrix3::Inverse(Kanvo_Matrix3& kResult, Tov_Value vTolerance) const
{
    const Tov_Value vDeterminant = Determinant();
    if (!(Tov_FltAbs(vDeterminant) > vTolerance))
    {
        return false;
    }
    const auto&     a = m_aafEntry;
    const Tov_Value v = 1.0F / vDeterminant;
    kResult           = {(a[1][1] * a[2][2] - a[1][2] * a[2][1]) * v, (a[0][2] * a[2][1] - a[0][1] * a[2][2]) * v,
                         (a[0][1] * a[1][2] - a[0][2] * a[1][1]) * v, (a[1][2] * a[2][0] - a[1][0] * a[2][2]) * v,
                         (a[0][0] * a[2][2] - a[0][2] * a[2][0]) * v, (a[0][2] * a[1][0] - a[0][0] * a[1][2]) * v,
                         (a[1][0] * a[2][1] - a[1][1] * a[2][0]) * v, (a[0][1] * a[2][0] - a[0][0] * a[2][1]) * v,
                         (a[0][0] * a[1][1] - a[0][1] * a[1][0]) * v};
    return true;
}
