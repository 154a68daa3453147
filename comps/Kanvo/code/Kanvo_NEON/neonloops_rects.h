// neonloops_rects: rows put together to the rectangles of neonloops.h. A template over the row functions of one
// instruction set, so that a small rectangle costs one indirect call and not one per row; instantiated beside the rows,
// in their file, so that nothing compiled for that instruction set is seen by another one.
#ifndef KANVO_NEONLOOPS_RECTS_H
#define KANVO_NEONLOOPS_RECTS_H

#include "rows.h"

template <class Rows>
struct Kanvo_LoopRects
{
    static void Fill(Kanvo_OffsetARGB32 kDst, Tov_UInt uiDstPitch, Kanvo_PixelARGB32 pxPixel, Tov_UInt uiWidth,
                     Tov_UInt uiHeight)
    {
        ForRows(kDst, uiDstPitch, uiHeight, [=](Kanvo_OffsetARGB32 kDstRow) { Rows::Fill(kDstRow, uiWidth, pxPixel); });
    }

    static void FillMix(Kanvo_OffsetARGB32 kDst, Tov_UInt uiDstPitch, Kanvo_PixelARGB32 pxPixel, Tov_UInt uiWidth,
                        Tov_UInt uiHeight, Tov_UByte ubAlpha)
    {
        ForRows(kDst, uiDstPitch, uiHeight,
                [=](Kanvo_OffsetARGB32 kDstRow) { Rows::FillMix(kDstRow, uiWidth, pxPixel, ubAlpha); });
    }

    static void Copy(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch,
                     Tov_UInt uiWidth, Tov_UInt uiHeight)
    {
        ForRows(kDst, uiDstPitch, kSrc, uiSrcPitch, uiHeight,
                [=](Kanvo_OffsetARGB32 kDstRow, const Kanvo_PixelARGB32* kSrcRow)
                { Rows::Copy(kDstRow, kSrcRow, uiWidth); });
    }

    static void OverOpaque(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiDstPitch,
                           Tov_UInt uiSrcPitch, Tov_UInt uiWidth, Tov_UInt uiHeight)
    {
        Over(kDst, kSrc, uiDstPitch, uiSrcPitch, uiWidth, uiHeight, 255);
    }

    static void Over(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch,
                     Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubAlpha)
    {
        ForRows(kDst, uiDstPitch, kSrc, uiSrcPitch, uiHeight,
                [=](Kanvo_OffsetARGB32 kDstRow, const Kanvo_PixelARGB32* kSrcRow)
                { Rows::Over(kDstRow, kSrcRow, uiWidth, ubAlpha); });
    }

    static void Convert565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiDstPitch,
                           Tov_UInt uiSrcPitch, Tov_UInt uiWidth, Tov_UInt uiHeight)
    {
        ForRows(kDst, uiDstPitch, kSrc, uiSrcPitch, uiHeight,
                [=](Kanvo_OffsetARGB32 kDstRow, const Kanvo_PixelRGB565* kSrcRow)
                { Rows::Convert565(kDstRow, kSrcRow, uiWidth); });
    }

    static void Over565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiDstPitch,
                        Tov_UInt uiSrcPitch, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubAlpha)
    {
        ForRows(kDst, uiDstPitch, kSrc, uiSrcPitch, uiHeight,
                [=](Kanvo_OffsetARGB32 kDstRow, const Kanvo_PixelRGB565* kSrcRow)
                { Rows::Over565(kDstRow, kSrcRow, uiWidth, ubAlpha); });
    }

    static void ColorMask(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kMask, Tov_UInt uiDstPitch,
                          Tov_UInt uiMaskPitch, Kanvo_ColorARGB32 clColor, Tov_UInt uiWidth, Tov_UInt uiHeight)
    {
        ColorMaskScaled(kDst, kMask, uiDstPitch, uiMaskPitch, clColor, uiWidth, uiHeight, 255);
    }

    static void ColorMaskScaled(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelA8* kMask, Tov_UInt uiDstPitch,
                                Tov_UInt uiMaskPitch, Kanvo_ColorARGB32 clColor, Tov_UInt uiWidth, Tov_UInt uiHeight,
                                Tov_UByte ubAlpha)
    {
        ForRows(kDst, uiDstPitch, kMask, uiMaskPitch, uiHeight,
                [=](Kanvo_OffsetARGB32 kDstRow, const Kanvo_PixelA8* kMaskRow)
                { Rows::ColorMask(kDstRow, kMaskRow, uiWidth, clColor, ubAlpha); });
    }

    static void StoreMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, const Kanvo_PixelA8* kMask,
                             Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch, Tov_UInt uiMaskPitch, Tov_UInt uiWidth,
                             Tov_UInt uiHeight)
    {
        ForRows(kDst, uiDstPitch, kSrc, uiSrcPitch, kMask, uiMaskPitch, uiHeight,
                [=](Kanvo_OffsetARGB32 kDstRow, const Kanvo_PixelRGB565* kSrcRow, const Kanvo_PixelA8* kMaskRow)
                { Rows::StoreMask565(kDstRow, kSrcRow, kMaskRow, uiWidth); });
    }

    static void BlendMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, const Kanvo_PixelA8* kMask,
                             Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch, Tov_UInt uiMaskPitch, Tov_UInt uiWidth,
                             Tov_UInt uiHeight)
    {
        BlendMask565Scaled(kDst, kSrc, kMask, uiDstPitch, uiSrcPitch, uiMaskPitch, uiWidth, uiHeight, 255);
    }

    static void BlendMask565Scaled(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, const Kanvo_PixelA8* kMask,
                                   Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch, Tov_UInt uiMaskPitch, Tov_UInt uiWidth,
                                   Tov_UInt uiHeight, Tov_UByte ubAlpha)
    {
        ForRows(kDst, uiDstPitch, kSrc, uiSrcPitch, kMask, uiMaskPitch, uiHeight,
                [=](Kanvo_OffsetARGB32 kDstRow, const Kanvo_PixelRGB565* kSrcRow, const Kanvo_PixelA8* kMaskRow)
                { Rows::BlendMask565(kDstRow, kSrcRow, kMaskRow, uiWidth, ubAlpha); });
    }

private:
    template <class Pixel>
    static KANVO_INLINE Pixel* NextRow(Pixel* kRow, Tov_UInt uiPitch)
    {
        return reinterpret_cast<Pixel*>(reinterpret_cast<std::uintptr_t>(kRow) + uiPitch);
    }

    template <class DrawRow>
    static KANVO_INLINE void ForRows(Kanvo_OffsetARGB32 kDst, Tov_UInt uiDstPitch, Tov_UInt uiHeight, DrawRow kDrawRow)
    {
        for (; uiHeight > 0; --uiHeight)
        {
            kDrawRow(kDst);
            kDst = NextRow(kDst, uiDstPitch);
        }
    }

    template <class SrcPixel, class DrawRow>
    static KANVO_INLINE void ForRows(Kanvo_OffsetARGB32 kDst, Tov_UInt uiDstPitch, const SrcPixel* kSrc,
                                     Tov_UInt uiSrcPitch, Tov_UInt uiHeight, DrawRow kDrawRow)
    {
        for (; uiHeight > 0; --uiHeight)
        {
            kDrawRow(kDst, kSrc);
            kDst = NextRow(kDst, uiDstPitch);
            kSrc = NextRow(kSrc, uiSrcPitch);
        }
    }

    template <class SrcPixel, class DrawRow>
    static KANVO_INLINE void ForRows(Kanvo_OffsetARGB32 kDst, Tov_UInt uiDstPitch, const SrcPixel* kSrc,
                                     Tov_UInt uiSrcPitch, const Kanvo_PixelA8* kMask, Tov_UInt uiMaskPitch,
                                     Tov_UInt uiHeight, DrawRow kDrawRow)
    {
        for (; uiHeight > 0; --uiHeight)
        {
            kDrawRow(kDst, kSrc, kMask);
            kDst  = NextRow(kDst, uiDstPitch);
            kSrc  = NextRow(kSrc, uiSrcPitch);
            kMask = NextRow(kMask, uiMaskPitch);
        }
    }
};

//! All that one level brings: its row functions, and the loops made of them.
struct Kanvo_LevelBodies
{
    using Loops = Kanvo_LoopRects<Kanvo_RowsReference>;  // any: all have the same types

    Kanvo_RowFunctions kRows;

    decltype(&Loops::Fill)               pfnFill;
    decltype(&Loops::FillMix)            pfnFillMix;
    decltype(&Loops::Copy)               pfnCopy;
    decltype(&Loops::Over)               pfnOver;
    decltype(&Loops::OverOpaque)         pfnOverOpaque;
    decltype(&Loops::Convert565)         pfnConvert565;
    decltype(&Loops::Over565)            pfnOver565;
    decltype(&Loops::ColorMask)          pfnColorMask;
    decltype(&Loops::ColorMaskScaled)    pfnColorMaskScaled;
    decltype(&Loops::StoreMask565)       pfnStoreMask565;
    decltype(&Loops::BlendMask565)       pfnBlendMask565;
    decltype(&Loops::BlendMask565Scaled) pfnBlendMask565Scaled;

    template <class Rows>
    static constexpr Kanvo_LevelBodies Of(Kanvo_Level eLevel)
    {
        using Rects = Kanvo_LoopRects<Rows>;
        return {Kanvo_RowFunctions::Of<Rows>(eLevel),
                &Rects::Fill,
                &Rects::FillMix,
                &Rects::Copy,
                &Rects::Over,
                &Rects::OverOpaque,
                &Rects::Convert565,
                &Rects::Over565,
                &Rects::ColorMask,
                &Rects::ColorMaskScaled,
                &Rects::StoreMask565,
                &Rects::BlendMask565,
                &Rects::BlendMask565Scaled};
    }
};

// Each exists where its KANVO_HAS_ is 1.
extern const Kanvo_LevelBodies g_Kanvo_kBodiesNEON;
extern const Kanvo_LevelBodies g_Kanvo_kBodiesAVX2;

#endif
