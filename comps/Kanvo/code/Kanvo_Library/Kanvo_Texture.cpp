// Kanvo_Texture: which bitmaps can be textures, and the frame from pixels to texels.
#include "Kanvo_Texture.h"

#include "Kanvo_Object.h"
#include "Tov_Math.h"
#include "Trak_Assert.h"

namespace
{

//! A power of two that a texture may measure.
Tov_Bool IsTextureSize(Tov_UInt uiSize)
{
    return uiSize != 0 && uiSize <= Kanvo_Texture::MAX_SIZE && (uiSize & (uiSize - 1)) == 0;
}

Tov_UInt Log2(Tov_UInt uiPowerOfTwo)
{
    Tov_UInt uiShift = 0;
    while ((1U << uiShift) < uiPowerOfTwo)
    {
        ++uiShift;
    }
    return uiShift;
}

struct Point
{
    double dX;
    double dY;
    double dZ;

    Point(const Kanvo_RenderState& kState, RenderStates eX, RenderStates eY, RenderStates eZ)
        : dX(static_cast<double>(kState.GetValue(eX))),
          dY(static_cast<double>(kState.GetValue(eY))),
          dZ(static_cast<double>(kState.GetValue(eZ)))
    {
    }
    Point(double dPX, double dPY, double dPZ) : dX(dPX), dY(dPY), dZ(dPZ) {}
};

Point Cross(const Point& kA, const Point& kB)
{
    return {kA.dY * kB.dZ - kA.dZ * kB.dY, kA.dZ * kB.dX - kA.dX * kB.dZ, kA.dX * kB.dY - kA.dY * kB.dX};
}

//! One quantity that is linear on the screen: what it is at pixel (0, 0), and its change per pixel.
struct Linear
{
    double dAtZero;
    double dPerX;
    double dPerY;

    //! kRow . (x, y, 1) / dScale, where x and y are the middle of a pixel.
    Linear(const Point& kRow, double dScale)
        : dAtZero((kRow.dZ + 0.5 * (kRow.dX + kRow.dY)) / dScale),
          dPerX(kRow.dX / dScale),
          dPerY(kRow.dY / dScale)
    {
    }

    Tov_Bool FitsFloat() const { return Fits(dAtZero) && Fits(dPerX) && Fits(dPerY); }

private:
    static Tov_Bool Fits(double dValue) { return dValue >= -3.0e38 && dValue <= 3.0e38; }
};

//! 16.16, rounded. What does not fit wraps: whole turns of 65536 texels are no difference to a texture.
Tov_Fixed ToFixed(double dValue)
{
    return Tov_LowWord(Tov_DblFloor(dValue * 65536.0 + 0.5));
}

}  // namespace

Kanvo_Texture::Kanvo_Texture(Kanvo_Bitmap* pkBitmap)
    : m_uiPitchShift(0),
      m_uiWidthMask(0),
      m_uiHeightMask(0),
      m_pkBitmap(nullptr)
{
    if (pkBitmap != nullptr)
    {
        SetBitmap(pkBitmap);
    }
}

Tov_Bool Kanvo_Texture::SetBitmap(Kanvo_Bitmap* pkBitmap)
{
    m_pkBitmap = nullptr;
    if (pkBitmap == nullptr)
    {
        return false;
    }
    const Tov_Bool bType = pkBitmap->GetType() == BM_ARGB32 || pkBitmap->GetType() == BM_ALPHA8;
    const Tov_UInt uiRow = bType ? pkBitmap->GetPitch() / Kanvo::BytesPerPixel(pkBitmap->GetType()) : 0;
    const Tov_Bool bFits = bType && pkBitmap->GetBuffer() != nullptr && IsTextureSize(pkBitmap->GetWidth()) &&
                           IsTextureSize(pkBitmap->GetHeight()) && IsTextureSize(uiRow);
    TRAK_CHECK(bFits, "bitmap is no texture");
    if (!bFits)
    {
        return false;
    }
    m_uiPitchShift = Log2(uiRow);
    m_uiWidthMask  = pkBitmap->GetWidth() - 1;
    m_uiHeightMask = pkBitmap->GetHeight() - 1;
    m_pkBitmap     = pkBitmap;
    return true;
}

void Kanvo_Texture::Use(Kanvo_RenderState& kState)
{
    kState.Set(TEXTURE, static_cast<void*>(this));
}

Tov_Bool Kanvo_MakeTextureFrame(const Kanvo_RenderState& kState, Kanvo_Polygon_TextureFrame& kFrame,
                                Tov_Bool& bPerspective)
{
    const Tov_UInt uiMode = kState.GetUInt(TEXTUREMODE);
    const Tov_Bool bMode  = uiMode == TM_PLANE2D || uiMode == TM_PLANE3D;
    TRAK_CHECK(bMode, "texture mode not supported");
    if (!bMode)
    {
        return false;
    }
    Point kOrigin(kState, TEXORIGINX, TEXORIGINY, TEXORIGINZ);
    Point kU(kState, TEXUAXISX, TEXUAXISY, TEXUAXISZ);
    Point kV(kState, TEXVAXISX, TEXVAXISY, TEXVAXISZ);
    bPerspective = uiMode == TM_PLANE3D;
    if (!bPerspective)
    {
        kOrigin.dZ = 1.0;
        kU.dZ      = 0.0;
        kV.dZ      = 0.0;
    }
    // P = u U + v V + O is a matrix with these columns times (u, v, 1). The rows of its inverse are the cross products of
    // the columns over the determinant.
    const Point  kRowU = Cross(kV, kOrigin);
    const Point  kRowV = Cross(kOrigin, kU);
    const Point  kRowZ = Cross(kU, kV);
    const double dDet  = kU.dX * kRowU.dX + kU.dY * kRowU.dY + kU.dZ * kRowU.dZ;
    const Linear kULine(kRowU, dDet);
    const Linear kVLine(kRowV, dDet);
    const Linear kZLine(kRowZ, dDet);

    const Tov_Bool bPlane = dDet != 0.0 && kULine.FitsFloat() && kVLine.FitsFloat() && kZLine.FitsFloat();
    TRAK_CHECK(bPlane, "texture axes span no plane");
    if (!bPlane)
    {
        return false;
    }
    if (bPerspective)
    {
        const auto kFlt  = [](double dValue) { return static_cast<Tov_Float>(dValue); };
        kFrame.kFloating = {kFlt(kULine.dAtZero), kFlt(kULine.dPerX), kFlt(kULine.dPerY),
                            kFlt(kVLine.dAtZero), kFlt(kVLine.dPerX), kFlt(kVLine.dPerY),
                            kFlt(kZLine.dAtZero), kFlt(kZLine.dPerX), kFlt(kZLine.dPerY)};
    }
    else
    {
        kFrame.kFixed = {ToFixed(kULine.dAtZero),
                         ToFixed(kULine.dPerX),
                         ToFixed(kULine.dPerY),
                         ToFixed(kVLine.dAtZero),
                         ToFixed(kVLine.dPerX),
                         ToFixed(kVLine.dPerY),
                         0,
                         0,
                         0};
    }
    return true;
}
