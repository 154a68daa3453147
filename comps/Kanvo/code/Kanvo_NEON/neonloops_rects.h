// neonloops_rects: rows put together to the rectangles of neonloops.h. A template over the row functions of one
// instruction set, so that a small rectangle costs one indirect call and not one per row; instantiated beside the rows,
// in their file, so that nothing compiled for that instruction set is seen by another one. The portable workers draw
// through g_Kanvo_pkBodies, the optimised path through the pointers of neonloops.h.
#ifndef KANVO_NEONLOOPS_RECTS_H
#define KANVO_NEONLOOPS_RECTS_H

#include "rows.h"

template <class Rows>
struct Kanvo_LoopRects
{
    static void Fill(Kanvo_OffsetARGB32 kDst, Tov_UInt uiDstPitch, Kanvo_PixelARGB32 pxPixel, Tov_UInt uiWidth,
                     Tov_UInt uiHeight)
    {
        Join(uiWidth, uiHeight, uiDstPitch);
        ForRows<&Rows::Fill>(uiHeight, At(kDst, uiDstPitch), uiWidth, pxPixel);
    }

    static void FillMix(Kanvo_OffsetARGB32 kDst, Tov_UInt uiDstPitch, Kanvo_PixelARGB32 pxPixel, Tov_UInt uiWidth,
                        Tov_UInt uiHeight, Tov_UByte ubAlpha)
    {
        Join(uiWidth, uiHeight, uiDstPitch);
        ForRows<&Rows::FillMix>(uiHeight, At(kDst, uiDstPitch), uiWidth, pxPixel, ubAlpha);
    }

    static void Copy(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch,
                     Tov_UInt uiWidth, Tov_UInt uiHeight)
    {
        if (uiSrcPitch == uiDstPitch && !Kanvo_RowsOverlap(kDst, kSrc, uiWidth * uiHeight))
        {
            Join(uiWidth, uiHeight, uiDstPitch);  // of blocks that overlap each row is faster
        }
        ForRows<&Rows::Copy>(uiHeight, At(kDst, uiDstPitch), At(kSrc, uiSrcPitch), uiWidth);
    }

    static void OverOpaque(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiDstPitch,
                           Tov_UInt uiSrcPitch, Tov_UInt uiWidth, Tov_UInt uiHeight)
    {
        Over(kDst, kSrc, uiDstPitch, uiSrcPitch, uiWidth, uiHeight, 255);
    }

    static void Over(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelARGB32* kSrc, Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch,
                     Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubAlpha)
    {
        ForRows<&Rows::Over>(uiHeight, At(kDst, uiDstPitch), At(kSrc, uiSrcPitch), uiWidth, ubAlpha);
    }

    static void Convert565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiDstPitch,
                           Tov_UInt uiSrcPitch, Tov_UInt uiWidth, Tov_UInt uiHeight)
    {
        ForRows<&Rows::Convert565>(uiHeight, At(kDst, uiDstPitch), At(kSrc, uiSrcPitch), uiWidth);
    }

    static void Over565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, Tov_UInt uiDstPitch,
                        Tov_UInt uiSrcPitch, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubAlpha)
    {
        ForRows<&Rows::Over565>(uiHeight, At(kDst, uiDstPitch), At(kSrc, uiSrcPitch), uiWidth, ubAlpha);
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
        ForRows<&Rows::ColorMask>(uiHeight, At(kDst, uiDstPitch), At(kMask, uiMaskPitch), uiWidth, clColor, ubAlpha);
    }

    static void StoreMask565(Kanvo_OffsetARGB32 kDst, const Kanvo_PixelRGB565* kSrc, const Kanvo_PixelA8* kMask,
                             Tov_UInt uiDstPitch, Tov_UInt uiSrcPitch, Tov_UInt uiMaskPitch, Tov_UInt uiWidth,
                             Tov_UInt uiHeight)
    {
        ForRows<&Rows::StoreMask565>(uiHeight, At(kDst, uiDstPitch), At(kSrc, uiSrcPitch), At(kMask, uiMaskPitch),
                                     uiWidth);
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
        ForRows<&Rows::BlendMask565>(uiHeight, At(kDst, uiDstPitch), At(kSrc, uiSrcPitch), At(kMask, uiMaskPitch),
                                     uiWidth, ubAlpha);
    }

private:
    //! The first pixel of a row, and how far it is to the next.
    template <class Pixel>
    struct RowAt
    {
        Pixel*   kRow;
        Tov_UInt uiPitch;

        // NOLINTNEXTLINE(google-explicit-constructor): it stands where a row function takes the row
        KANVO_INLINE      operator Pixel*() const { return kRow; }
        KANVO_INLINE void Next() { kRow = reinterpret_cast<Pixel*>(reinterpret_cast<std::uintptr_t>(kRow) + uiPitch); }
    };
    template <class Pixel>
    static KANVO_INLINE RowAt<Pixel> At(Pixel* kRow, Tov_UInt uiPitch)
    {
        return {kRow, uiPitch};
    }
    template <class Pixel>
    static KANVO_INLINE void Next(RowAt<Pixel>& kAt)
    {
        kAt.Next();
    }
    static KANVO_INLINE void Next(Tov_UInt /*all other arguments are the same in each row*/) {}

    //! Rows that follow each other without padding are one long row, to be drawn in one go and in the same order.
    static KANVO_INLINE void Join(Tov_UInt& uiWidth, Tov_UInt& uiHeight, Tov_UInt uiPitch)
    {
        if (uiPitch == uiWidth * sizeof(Kanvo_PixelARGB32))
        {
            uiWidth *= uiHeight;
            uiHeight = 1;
        }
    }

    //! Calls the row function for each row. kArguments: what it takes, with an At for each row.
    template <auto pfnRow, class... Arguments>
    static KANVO_INLINE void ForRows(Tov_UInt uiHeight, Arguments... kArguments)
    {
        for (; uiHeight > 0; --uiHeight)
        {
            pfnRow(kArguments...);
            (Next(kArguments), ...);
        }
    }
};

// clang-format off
//! The one list of the loops: the pointer of neonloops.h, and the rectangle it points to.
#define KANVO_LOOP_LIST(LOOP)                                                                                          \
    LOOP(neonloops_fill_argb32, Fill)                                                                                  \
    LOOP(neonloops_fill_argb32_ag, FillMix)                                                                            \
    LOOP(neonloops_blit_argb32_argb32, Copy)                                                                           \
    LOOP(neonloops_blit_argb32_argb32_as_ag, Over)                                                                     \
    LOOP(neonloops_blit_argb32_argb32_as, OverOpaque)                                                                  \
    LOOP(neonloops_blit_argb32_rgb565, Convert565)                                                                     \
    LOOP(neonloops_blit_argb32_rgb565_ag, Over565)                                                                     \
    LOOP(neonloops_blitcolor_argb32_a8, ColorMask)                                                                     \
    LOOP(neonloops_blitcolor_argb32_a8_ag, ColorMaskScaled)                                                            \
    LOOP(neonloops_blit_argb32_rgb565a8, StoreMask565)                                                                 \
    LOOP(neonloops_blit_argb32_rgb565a8_as, BlendMask565)                                                              \
    LOOP(neonloops_blit_argb32_rgb565a8_as_ag, BlendMask565Scaled)
// clang-format on

//! All that one level brings: its row functions, and the loops made of them, pfnFill and so on.
struct Kanvo_LevelBodies
{
    Kanvo_RowFunctions kRows;

    // those of any rows: all have the same types
#define KANVO_LOOP_POINTER(loop, name) decltype(&Kanvo_LoopRects<Kanvo_RowsReference>::name) pfn##name;
    KANVO_LOOP_LIST(KANVO_LOOP_POINTER)
#undef KANVO_LOOP_POINTER

    template <class Rows>
    static constexpr Kanvo_LevelBodies Of(Kanvo_Level eLevel)
    {
#define KANVO_LOOP_ADDRESS(loop, name) &Kanvo_LoopRects<Rows>::name,
        return {Kanvo_RowFunctions::Of<Rows>(eLevel), KANVO_LOOP_LIST(KANVO_LOOP_ADDRESS)};
#undef KANVO_LOOP_ADDRESS
    }
};

//! What is in force. Never null.
extern const Kanvo_LevelBodies* g_Kanvo_pkBodies;

// Each exists where its KANVO_HAS_ is 1.
extern const Kanvo_LevelBodies g_Kanvo_kBodiesNEON;
extern const Kanvo_LevelBodies g_Kanvo_kBodiesAVX2;

#endif
