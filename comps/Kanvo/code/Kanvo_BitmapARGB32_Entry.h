// Kanvo_BitmapARGB32_Entry: the questions that several entries of the render target ask before they choose a worker.
// Private to the files Kanvo_BitmapARGB32*.cpp.
#ifndef KANVO_BITMAPARGB32_ENTRY_H
#define KANVO_BITMAPARGB32_ENTRY_H

#include "Kanvo_Bitmap.h"
#include "Trak_Assert.h"

//! Whether the optimised loops may run: the render state wants them and the call does not ask for a colour key.
inline Tov_Bool Kanvo_NeonAllowed(const Kanvo_Bitmap* pkDest, Tov_Flag ulFlags)
{
    return (ulFlags & BLIT_COLORKEY) == 0 && pkDest->GetState(OPTIMIZED_BLIT).uiValue == OB_NEON;
}

//! Whether nothing of the destination shows through: full opacity, and a source without alpha.
inline Tov_Bool Kanvo_IsOpaquePlain(const Kanvo_Bitmap* pkSource, Tov_UByte ubAlpha)
{
    return ubAlpha == 255 && !pkSource->HasAlpha();
}

//! Asserts that a bitmap can serve as alpha map. A null one fails the same assertion.
inline void Kanvo_CheckAlphaMap(const Kanvo_Bitmap* pkAlpha)
{
    TRAK_CHECK(pkAlpha != nullptr && (pkAlpha->GetType() == BM_ALPHA5_2 || pkAlpha->GetType() == BM_ALPHA8 ||
                                      pkAlpha->GetType() == BM_ARGB32),
               "alpha bitmap is not the right type");
}

//! As Kanvo_CheckAlphaMap, for the operations with two colours that only know the format BM_ALPHA5_2.
inline void Kanvo_CheckTwoColorMap(const Kanvo_Bitmap* pkAlpha)
{
    TRAK_CHECK(pkAlpha != nullptr && pkAlpha->GetType() == BM_ALPHA5_2, "alpha bitmap is not the right type");
}

//! Whether a source is a stored image, whose workers take its rectangle as it is and clip for themselves.
inline Tov_Bool Kanvo_IsRLE(const Kanvo_Bitmap* pkSource)
{
    return pkSource->GetType() == BM_RGB32RLE8 || pkSource->GetType() == BM_RGB32RLE16;
}

//! Whether a rectangle lies inside a bitmap. An empty one at a place inside does.
inline Tov_Bool Kanvo_IsInside(const Kanvo_Bitmap* pkBitmap, std::int64_t iX, std::int64_t iY, Tov_UInt uiWidth,
                               Tov_UInt uiHeight)
{
    return iX >= 0 && iY >= 0 && iX + uiWidth <= pkBitmap->GetWidth() && iY + uiHeight <= pkBitmap->GetHeight();
}

//! Whether the pixels of one axis, one or more, lie at or behind uiMin and before uiEnd.
inline Tov_Bool Kanvo_IsBetween(Tov_UInt uiFirst, Tov_UInt uiLength, Tov_UInt uiMin, Tov_UInt uiEnd)
{
    const Tov_UInt uiOffset = uiFirst - uiMin;  // below uiMin, or less than one pixel: wraps, and is too large
    const Tov_UInt uiSpace  = uiEnd - uiMin;
    return uiOffset < uiSpace && uiLength - 1 < uiSpace - uiOffset;
}

//! Whether there is nothing to be clipped, as most often: found out sooner than the rectangle is clipped.
inline Tov_Bool Kanvo_IsInClip(const Kanvo_Bitmap* pkDest, Tov_Int iX, Tov_Int iY, Tov_UInt uiWidth, Tov_UInt uiHeight)
{
    // A negative coordinate is far behind any end.
    return Kanvo_IsBetween(static_cast<Tov_UInt>(iX), uiWidth, pkDest->GetClipMinX(), pkDest->GetClipMaxX() + 1) &&
           Kanvo_IsBetween(static_cast<Tov_UInt>(iY), uiHeight, pkDest->GetClipMinY(), pkDest->GetClipMaxY() + 1);
}

//! Clips a fill in place; with BLIT_NOCLIP takes it as it is, if the caller kept the promise that it lies inside the
//! bitmap. False where nothing is to be drawn.
inline Tov_Bool Kanvo_PrepareFill(const Kanvo_Bitmap* pkDest, Tov_Flag ulFlags, Tov_UInt& uiWidth, Tov_UInt& uiHeight,
                                  Tov_Int& iX, Tov_Int& iY)
{
    if ((ulFlags & BLIT_NOCLIP) == 0)
    {
        if (Kanvo_IsInClip(pkDest, iX, iY, uiWidth, uiHeight))
        {
            return true;
        }
        // Of copies, so that the caller's own may stay in registers.
        Tov_UInt       uiClippedWidth  = uiWidth;
        Tov_UInt       uiClippedHeight = uiHeight;
        Tov_Int        iClippedX       = iX;
        Tov_Int        iClippedY       = iY;
        const Tov_Bool bVisible        = pkDest->ClipFillrect(uiClippedWidth, uiClippedHeight, iClippedX, iClippedY);
        uiWidth                        = uiClippedWidth;
        uiHeight                       = uiClippedHeight;
        iX                             = iClippedX;
        iY                             = iClippedY;
        return bVisible;
    }
    const Tov_Bool bInside = Kanvo_IsInside(pkDest, iX, iY, uiWidth, uiHeight);
    TRAK_CHECK(bInside, "unclipped rectangle outside the bitmap");
    return bInside;
}

//! As Kanvo_PrepareFill, for a blit: both rectangles count. A source without pixels asserts and draws nothing.
inline Tov_Bool Kanvo_PrepareBlit(const Kanvo_Bitmap* pkDest, const Kanvo_Bitmap* pkSource, Tov_Flag ulFlags,
                                  Tov_UInt& uiWidth, Tov_UInt& uiHeight, Tov_UInt& uiSrcX, Tov_UInt& uiSrcY,
                                  Tov_Int& iDstX, Tov_Int& iDstY)
{
    TRAK_CHECK(pkSource->GetBuffer() != nullptr, "bitmap has no buffer");
    if (pkSource->GetBuffer() == nullptr)
    {
        return false;
    }
    if ((ulFlags & BLIT_NOCLIP) == 0)
    {
        return (Kanvo_IsInClip(pkDest, iDstX, iDstY, uiWidth, uiHeight) &&
                Kanvo_IsBetween(uiSrcX, uiWidth, 0, pkSource->GetWidth()) &&
                Kanvo_IsBetween(uiSrcY, uiHeight, 0, pkSource->GetHeight())) ||
               pkDest->ClipBlitrect(pkSource, uiWidth, uiHeight, uiSrcX, uiSrcY, iDstX, iDstY);
    }
    const Tov_Bool bInside = Kanvo_IsRLE(pkSource) || (Kanvo_IsInside(pkDest, iDstX, iDstY, uiWidth, uiHeight) &&
                                                       Kanvo_IsInside(pkSource, uiSrcX, uiSrcY, uiWidth, uiHeight));
    TRAK_CHECK(bInside, "unclipped rectangle outside the bitmap");
    return bInside;
}

#endif
