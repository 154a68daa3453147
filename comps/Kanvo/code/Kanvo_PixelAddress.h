// Kanvo_PixelAddress: how a pixel of one size is found in a bitmap, and the two operations on a 2x2 block. Base of the
// four pixel policies; Policy is the policy itself, whose arithmetic the block operations use.
#ifndef KANVO_PIXELADDRESS_H
#define KANVO_PIXELADDRESS_H

#include "Kanvo_Bitmap.h"
#include "Kanvo_ColorMath.h"

//! What the optimised loops know of a bitmap: where its pixels are. Stands in for a Kanvo_Bitmap wherever a policy only
//! wants to find a pixel.
struct Kanvo_PixelView
{
    void*    pBuffer;
    Tov_UInt uiPitch;

    void*    GetBuffer() const { return pBuffer; }
    Tov_UInt GetPitch() const { return uiPitch; }
};

//! An offset is a typed pointer to a pixel inside a bitmap's buffer. Nothing here tests bounds: callers stay inside.
//! Bitmap is a Kanvo_Bitmap or a Kanvo_PixelView.
template <class Policy, class PixelType>
class Kanvo_PixelAddress
{
public:
    using Pixel  = PixelType;
    using Offset = PixelType*;

    template <class Bitmap>
    static KANVO_INLINE void GetOffset(const Bitmap* pkBitmap, Tov_UInt uiX, Tov_UInt uiY, Offset& kOffset)
    {
        AddOffset(pkBitmap, static_cast<Offset>(pkBitmap->GetBuffer()), uiX, uiY, kOffset);
    }

    //! kBase moved by uiX columns and uiY rows.
    template <class Bitmap>
    static KANVO_INLINE void AddOffset(const Bitmap* pkBitmap, Offset kBase, Tov_UInt uiX, Tov_UInt uiY,
                                       Offset& kOffset)
    {
        kOffset = MoveBytes(kBase, static_cast<std::size_t>(uiY) * pkBitmap->GetPitch()) + uiX;
    }

    template <class Bitmap>
    static KANVO_INLINE void IncX(const Bitmap* /*pkBitmap*/, Offset& kOffset)
    {
        ++kOffset;
    }

    template <class Bitmap>
    static KANVO_INLINE void IncY(const Bitmap* pkBitmap, Offset& kOffset)
    {
        kOffset = MoveBytes(kOffset, pkBitmap->GetPitch());
    }

    static KANVO_INLINE Pixel GetPixel(Offset kOffset) { return *kOffset; }

    //! The texel (uiX, uiY) of a texture whose rows are 2^uiPitchShift pixels long.
    static KANVO_INLINE void TextureOffset(Offset kBase, Tov_UInt uiX, Tov_UInt uiY, Tov_UInt uiPitchShift,
                                           Offset& kOffset)
    {
        kOffset = kBase + (static_cast<std::size_t>(uiY) << uiPitchShift) + uiX;
    }

    //! Bilinear mix of the 2x2 block whose top-left pixel is at kOffset.
    template <class Bitmap>
    static KANVO_INLINE Pixel Blend4(const Bitmap* pkBitmap, Offset kOffset, Tov_UByte ubAlphaX, Tov_UByte ubAlphaY)
    {
        Offset kBelow = kOffset;
        IncY(pkBitmap, kBelow);
        return Policy::MixBilinear(kOffset[0], kOffset[1], kBelow[0], kBelow[1], ubAlphaX, ubAlphaY);
    }

    //! Reads the 2x2 block column by column (top-left, bottom-left, top-right, bottom-right) and stops with false at
    //! the first pixel whose colour equals the key; the pixels after it are then left unwritten.
    template <class Bitmap>
    static KANVO_INLINE Tov_Bool ColorKeyTest4(const Bitmap* pkBitmap, Offset kOffset, Kanvo_Color cColorKey,
                                               Pixel& pxPixel1, Pixel& pxPixel2, Pixel& pxPixel3, Pixel& pxPixel4)
    {
        Offset kBelow = kOffset;
        IncY(pkBitmap, kBelow);
        return ReadUnlessKey(kOffset, cColorKey, pxPixel1) && ReadUnlessKey(kBelow, cColorKey, pxPixel3) &&
               ReadUnlessKey(kOffset + 1, cColorKey, pxPixel2) && ReadUnlessKey(kBelow + 1, cColorKey, pxPixel4);
    }

private:
    static KANVO_INLINE Offset MoveBytes(Offset kOffset, std::size_t uiBytes)
    {
        return reinterpret_cast<Offset>(reinterpret_cast<Tov_UByte*>(kOffset) + uiBytes);
    }

    static KANVO_INLINE Tov_Bool ReadUnlessKey(Offset kOffset, Kanvo_Color cColorKey, Pixel& pxPixel)
    {
        pxPixel = *kOffset;
        return Policy::PixelToColor(pxPixel) != cColorKey;
    }
};

//! What the two formats of one 32-bit word per pixel share: channels in bytes, blue lowest, the top byte alpha or, in
//! RGB32, carried along.
template <class Policy>
class Kanvo_PixelWord : public Kanvo_PixelAddress<Policy, Tov_UInt>
{
public:
    static KANVO_INLINE Tov_UInt    ColorToPixel(Kanvo_Color cColor) { return cColor; }
    static KANVO_INLINE Kanvo_Color PixelToColor(Tov_UInt pxPixel) { return pxPixel & 0x00FFFFFFU; }
    static KANVO_INLINE Tov_UByte   RedFromPixel(Tov_UInt pxPixel) { return static_cast<Tov_UByte>(pxPixel >> 16); }
    static KANVO_INLINE Tov_UByte   GreenFromPixel(Tov_UInt pxPixel) { return static_cast<Tov_UByte>(pxPixel >> 8); }
    static KANVO_INLINE Tov_UByte   BlueFromPixel(Tov_UInt pxPixel) { return static_cast<Tov_UByte>(pxPixel); }
    static KANVO_INLINE Tov_UByte   AlphaFromPixel(Tov_UInt pxPixel) { return static_cast<Tov_UByte>(pxPixel >> 24); }
    static KANVO_INLINE Tov_UInt    RedBlueFromPixel(Tov_UInt pxPixel) { return pxPixel & KANVO_LANES; }
    //! Joins the two lanes with green; the alpha byte is 0.
    static KANVO_INLINE Tov_UInt PixelFromParts(Tov_UInt uiRedBlue, Tov_UByte ubGreen)
    {
        return (uiRedBlue & KANVO_LANES) | (static_cast<Tov_UInt>(ubGreen) << 8);
    }
};

#endif
