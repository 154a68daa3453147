// Kanvo_Geometry: vectors, matrices and the polygon vertex. Single precision, y grows downwards.
// Only sums, products and square roots are used, so that results are equal on every machine.
#ifndef KANVO_GEOMETRY_H
#define KANVO_GEOMETRY_H

#include "Tov_Memory.h"
#include "Tov_Types.h"

class Kanvo_Vector2
{
public:
    Tov_Value x;
    Tov_Value y;

    static const Kanvo_Vector2 ZERO;
    static const Kanvo_Vector2 UNIT_X;
    static const Kanvo_Vector2 UNIT_Y;

    //! Leaves both members uninitialised.
    Kanvo_Vector2() {}  // NOLINT(modernize-use-equals-default): a defaulted one would be zeroed by Kanvo_Vector2{}
    constexpr Kanvo_Vector2(Tov_Value vX, Tov_Value vY) : x(vX), y(vY) {}

    //! The z component of the 3D cross product.
    constexpr Tov_Value Cross(const Kanvo_Vector2& kOther) const { return x * kOther.y - y * kOther.x; }
};

class Kanvo_Vector3
{
public:
    Tov_Value x;
    Tov_Value y;
    Tov_Value z;

    Kanvo_Vector3() {}  // NOLINT(modernize-use-equals-default): leaves the members uninitialised, as Kanvo_Vector2
    constexpr Kanvo_Vector3(Tov_Value vX, Tov_Value vY, Tov_Value vZ) : x(vX), y(vY), z(vZ) {}
};

//! Polygon vertex; arrays of it are passed as a pointer and a count.
struct Kanvo_Coord2D
{
    Tov_Value x;
    Tov_Value y;
};

//! Vertex uiIndex of a list whose vertices lie uiPitch bytes apart, at any alignment.
inline Kanvo_Coord2D Kanvo_ReadVertex(const void* pvValues, Tov_UInt uiPitch, Tov_UInt uiIndex)
{
    Kanvo_Coord2D kVertex;
    Tov_Memcpy(&kVertex, static_cast<const Tov_UByte*>(pvValues) + static_cast<std::size_t>(uiIndex) * uiPitch,
               sizeof kVertex);
    return kVertex;
}
inline void Kanvo_WriteVertex(void* pvValues, Tov_UInt uiPitch, Tov_UInt uiIndex, const Kanvo_Coord2D& kVertex)
{
    Tov_Memcpy(static_cast<Tov_UByte*>(pvValues) + static_cast<std::size_t>(uiIndex) * uiPitch, &kVertex,
               sizeof kVertex);
}

//! 2x2 matrix, row by row: transforms the vertices of primitives.
class Kanvo_Matrix2
{
public:
    Tov_Value m_aafEntry[2][2];

    static const Kanvo_Matrix2 IDENTITY;

    Kanvo_Matrix2() {}  // NOLINT(modernize-use-equals-default): leaves the entries uninitialised
    constexpr Kanvo_Matrix2(Tov_Value v00, Tov_Value v01, Tov_Value v10, Tov_Value v11)
        : m_aafEntry{{v00, v01}, {v10, v11}}
    {
    }

    Tov_Value*       operator[](int iRow) { return m_aafEntry[iRow]; }
    const Tov_Value* operator[](int iRow) const { return m_aafEntry[iRow]; }

    //! Matrix times column vector.
    constexpr Kanvo_Vector2 operator*(const Kanvo_Vector2& kV) const
    {
        return {m_aafEntry[0][0] * kV.x + m_aafEntry[0][1] * kV.y, m_aafEntry[1][0] * kV.x + m_aafEntry[1][1] * kV.y};
    }
};

//! 3x3 matrix, row by row; nine floats and nothing else.
class Kanvo_Matrix3
{
public:
    Tov_Value m_aafEntry[3][3];

    static const Tov_Value     EPSILON;  //!< below this a determinant counts as zero
    static const Kanvo_Matrix3 ZERO;
    static const Kanvo_Matrix3 IDENTITY;

    Kanvo_Matrix3() {}  // NOLINT(modernize-use-equals-default): leaves the entries uninitialised
    constexpr Kanvo_Matrix3(Tov_Value v00, Tov_Value v01, Tov_Value v02, Tov_Value v10, Tov_Value v11, Tov_Value v12,
                            Tov_Value v20, Tov_Value v21, Tov_Value v22)
        : m_aafEntry{{v00, v01, v02}, {v10, v11, v12}, {v20, v21, v22}}
    {
    }

    //! Affine map of the plane: scale, then rotate by vAngle degrees (clockwise on the screen, where y grows
    //! downwards), then move.
    static Kanvo_Matrix3 ScaleRotateMove(const Kanvo_Vector2& kScale, Tov_Value vAngle, const Kanvo_Vector2& kMove);

    //! First entry of a row; no range check.
    Tov_Value*       operator[](int iRow) { return m_aafEntry[iRow]; }
    const Tov_Value* operator[](int iRow) const { return m_aafEntry[iRow]; }

    //! this * kOther: the map that applies kOther first.
    Kanvo_Matrix3 operator*(const Kanvo_Matrix3& kOther) const;

    //! Matrix times column vector.
    Kanvo_Vector3 operator*(const Kanvo_Vector3& kV) const;

    //! Applies the upper two rows to the point (x, y, 1).
    Kanvo_Vector2 TransformPoint(const Kanvo_Vector2& kPoint) const;

    Kanvo_Matrix3 Transpose() const;

    Tov_Value Determinant() const;

    //! Stores the inverse. Returns false, leaving kResult alone, where |determinant| is not above vTolerance.
    Tov_Bool Inverse(Kanvo_Matrix3& kResult, Tov_Value vTolerance = EPSILON) const;
};

//! Sine and cosine of an angle in degrees, by fixed operations in double precision: equal on every machine, exact at
//! multiples of 90, error below 1e-15 elsewhere. An angle that is not finite, or 2^31 degrees and more, counts as 0.
void Kanvo_SinCosDegrees(Tov_Value vAngle, double& dSin, double& dCos);

#endif
