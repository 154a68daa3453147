// Kanvo_StretchBlitParam: the geometry of scaled blits: which source position each destination pixel is sampled at, and
// which pixels are drawn. Called by the workers of Kanvo_StretchBlit and, through Kanvo_StretchAxis, by the optimised
// loops. Whole numbers only, so that every machine samples alike.
//
// The rectangle is scaled as a whole: destination pixel i of n is sampled at the source position of its centre,
// (i + 1/2) * source / n. Start and step are fixed before anything is clipped, so that a partial draw picks exactly the
// pixels of the full one. No sample, and with filtering no 2x2 block, ever lies outside the source bitmap.
#ifndef KANVO_STRETCHBLITPARAM_H
#define KANVO_STRETCHBLITPARAM_H

#include "Kanvo_Bitmap.h"
#include "Tov_Types.h"

//! One axis of a scaled blit. All values are pixels unless marked fx, which are 16.16.
struct Kanvo_StretchAxis
{
    Tov_Fixed fxSrcFirst;  //!< source position of the first pixel drawn
    Tov_Fixed fxStep;      //!< source step from pixel to pixel; 0 for a single pixel
    Tov_Int   iDstFirst;   //!< where that pixel is
    Tov_Int   iCount;      //!< pixels to draw, at least 1

    //! What is asked for: iSrcLength pixels from iSrc on of a bitmap of iBound pixels, scaled to iDstLength pixels from
    //! iDst on, of which those from iClipMin to iClipMax are drawn.
    struct Request
    {
        std::int64_t iSrc;
        std::int64_t iSrcLength;
        std::int64_t iBound;
        std::int64_t iDst;
        std::int64_t iDstLength;
        std::int64_t iClipMin;
        std::int64_t iClipMax;
        Tov_Bool     bBilinear;
    };

    //! False where nothing is visible, a length is 0, or a coordinate leaves what 16.16 can hold (source up to 32767,
    //! destination -32768 to 32767), and for a filtered source of one pixel in a bitmap of one.
    Tov_Bool Calc(const Request& kRequest);
};

class Kanvo_StretchBlitParam
{
public:
    //! Both axes. pkAlpha: a map addressed like the source, or null; the smaller of both bounds the samples. Read of
    //! ulFlags: BLIT_BILINEAR; BLIT_NOCLIP (the clip rectangle does not count; a destination rectangle that leaves the
    //! bitmap then asserts "unclipped rectangle outside the bitmap"); BLIT_ASPECT (the largest rectangle of the source's
    //! aspect inside the destination rectangle is drawn, centred). False where nothing is to be drawn.
    static Tov_Bool Calc(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkAlpha, const Kanvo_Bitmap* pkDest,
                         Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_Int iSrcX, Tov_Int iSrcY, Tov_UInt uiDstWidth,
                         Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY, Tov_Flag ulFlags, Kanvo_StretchAxis& kX,
                         Kanvo_StretchAxis& kY);

    //! The same as loose numbers, positions and steps in 16.16; right and bottom are those of the last pixel. Where
    //! nothing is to be drawn the results are left alone.
    static Tov_Bool CalcParams(const Kanvo_Bitmap* pkSrc, const Kanvo_Bitmap* pkAlpha, const Kanvo_Bitmap* pkDest,
                               Tov_UInt uiSrcWidth, Tov_UInt uiSrcHeight, Tov_Int iSrcX, Tov_Int iSrcY,
                               Tov_UInt uiDstWidth, Tov_UInt uiDstHeight, Tov_Int iDstX, Tov_Int iDstY,
                               Tov_Flag ulFlags, Tov_Int& src_left, Tov_Int& src_top, Tov_Int& src_right,
                               Tov_Int& src_bottom, Tov_Int& dst_left, Tov_Int& dst_top, Tov_Int& dst_right,
                               Tov_Int& dst_bottom, Tov_Int& dx, Tov_Int& dy, Tov_Int& iWidth, Tov_Int& iHeight);
};

#endif
