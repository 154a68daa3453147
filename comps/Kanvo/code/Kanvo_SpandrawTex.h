// Kanvo_SpandrawTex: textured spans: two ways to walk along the texture, and five ways to write a texel back, which is what
// a span is a template over. Fed by Kanvo_Polydraw; reads the texture and writes pixels through the pixel policies.
#ifndef KANVO_SPANDRAWTEX_H
#define KANVO_SPANDRAWTEX_H

#include <algorithm>
#include <type_traits>

#include "Kanvo_BitmapA8.h"
#include "Kanvo_Spandraw.h"

//! What a polygon hands to every write-back.
struct Kanvo_Polydraw_data
{
    Tov_UInt uiValue;  //!< the colour or the alpha that the write-back uses
};

//! The texel at (u, v), 16.16, wrapped by the masks (16.16 too, fraction bits set). uiN: log2 of the row length in texels.
template <class TextureAccess>
KANVO_INLINE typename TextureAccess::Pixel Kanvo_ReadTexel(typename TextureAccess::Offset rkSrc, Tov_Fixed u,
                                                           Tov_Fixed v, Tov_UInt uiMaskX, Tov_UInt uiMaskY,
                                                           Tov_UInt uiN)
{
    typename TextureAccess::Offset kTexel;
    TextureAccess::TextureOffset(rkSrc, (static_cast<Tov_UInt>(u) & uiMaskX) >> 16,
                                 (static_cast<Tov_UInt>(v) & uiMaskY) >> 16, uiN, kTexel);
    return TextureAccess::GetPixel(kTexel);
}

//! A write-back reads the texel at (u, v) of the texture that starts at rkSrc and combines it with the pixel at rkDest.
//! This base does the reading; Rule::Write(destination, texel, data) is the combination. A write-back may also have a
//! Strip, which takes up to KANVO_STRIP texels and combines all with pixels side by side, giving the same bytes.
template <class TextureAccess, class Rule>
struct Kanvo_WritebackTex
{
    using Texture = TextureAccess;

    static KANVO_INLINE void BlendTexel(typename TextureAccess::Offset rkSrc, Kanvo_OffsetARGB32 rkDest, Tov_Fixed u,
                                        Tov_Fixed v, Tov_UInt uiMaskX, Tov_UInt uiMaskY, Tov_UInt uiN,
                                        const Kanvo_Polydraw_data& rData)
    {
        Rule::Write(rkDest, Kanvo_ReadTexel<TextureAccess>(rkSrc, u, v, uiMaskX, uiMaskY, uiN), rData);
    }
};

//! The texel as it is, alpha included.
struct Kanvo_WritebackTex_Default : Kanvo_WritebackTex<Kanvo_PixelARGB32_Access, Kanvo_WritebackTex_Default>
{
    static KANVO_INLINE void Write(Kanvo_OffsetARGB32 kDest, Kanvo_PixelARGB32 pxTexel,
                                   const Kanvo_Polydraw_data& /*rData*/)
    {
        Kanvo_PixelARGB32_Access::PutPixel(kDest, pxTexel);
    }
};

//! The texel blended by the low byte of the data. Its own alpha is not read.
struct Kanvo_WritebackTex_Alpha : Kanvo_WritebackTex<Kanvo_PixelARGB32_Access, Kanvo_WritebackTex_Alpha>
{
    static KANVO_INLINE void Write(Kanvo_OffsetARGB32 kDest, Kanvo_PixelARGB32 pxTexel,
                                   const Kanvo_Polydraw_data& rData)
    {
        Kanvo_PixelARGB32_Access::BlendPixel(kDest, pxTexel, static_cast<Tov_UByte>(rData.uiValue));
    }

    //! Made opaque, texels blend by their own alpha times the data as they do by the data alone.
    class Strip
    {
    public:
        Strip(const Kanvo_Polydraw_data& rData, Tov_UInt /*uiCount*/) : m_ubAlpha(static_cast<Tov_UByte>(rData.uiValue))
        {
        }
        KANVO_INLINE void Take(Tov_UInt uiIndex, Kanvo_PixelARGB32 pxTexel)
        {
            m_apxTexels[uiIndex] = Kanvo_PixelARGB32_Access::ColorAndAlphaToPixel(pxTexel, 255);
        }
        void Write(Kanvo_OffsetARGB32 kDest, Tov_UInt uiCount) const
        {
            g_Kanvo_pkRows->pfnOver(kDest, m_apxTexels, uiCount, m_ubAlpha);
        }

    private:
        Tov_UByte         m_ubAlpha;
        Kanvo_PixelARGB32 m_apxTexels[KANVO_STRIP];
    };
};

//! The texel's colour added; the pixel becomes opaque.
struct Kanvo_WritebackTex_Additive : Kanvo_WritebackTex<Kanvo_PixelARGB32_Access, Kanvo_WritebackTex_Additive>
{
    static KANVO_INLINE void Write(Kanvo_OffsetARGB32 kDest, Kanvo_PixelARGB32 pxTexel,
                                   const Kanvo_Polydraw_data& /*rData*/)
    {
        Kanvo_PixelARGB32_Access::AddPixel(kDest, pxTexel);
    }
};

//! Coverages for one colour.
class Kanvo_CoverStrip
{
public:
    Kanvo_CoverStrip(Kanvo_PixelARGB32 pxColor, Tov_UInt uiCount)
    {
        std::fill_n(m_apxColor, std::min(uiCount, KANVO_STRIP), pxColor);
    }
    KANVO_INLINE void Take(Tov_UInt uiIndex, Tov_UByte ubCover) { m_aubCover[uiIndex] = ubCover; }
    void              Write(Kanvo_OffsetARGB32 kDest, Tov_UInt uiCount) const
    {
        g_Kanvo_pkRows->pfnBlendMask(kDest, m_apxColor, m_aubCover, uiCount, 255);
    }

private:
    Kanvo_PixelARGB32 m_apxColor[KANVO_STRIP];
    Tov_UByte         m_aubCover[KANVO_STRIP];
};

//! The colour of the data, with the texel as its coverage. The colour's own alpha is not read.
struct Kanvo_WritebackTex_Color : Kanvo_WritebackTex<Kanvo_PixelA8_Access, Kanvo_WritebackTex_Color>
{
    static KANVO_INLINE void Write(Kanvo_OffsetARGB32 kDest, Kanvo_PixelA8 pxTexel, const Kanvo_Polydraw_data& rData)
    {
        if (pxTexel != 0)
        {
            Kanvo_PixelARGB32_Access::BlendPixel(kDest, Kanvo_PixelARGB32_Access::ColorToPixel(rData.uiValue), pxTexel);
        }
    }

    class Strip : public Kanvo_CoverStrip
    {
    public:
        Strip(const Kanvo_Polydraw_data& rData, Tov_UInt uiCount)
            : Kanvo_CoverStrip(Kanvo_PixelARGB32_Access::ColorToPixel(rData.uiValue), uiCount)
        {
        }
    };
};

//! The colour of the data, with the texel times the data's alpha as its coverage.
// KEPT: the coverage is the product shifted by 8, so that 255 times 255 is 254. Test: AFullTexelAtFullAlphaCoversBy254.
struct Kanvo_WritebackTex_ColorAlpha : Kanvo_WritebackTex<Kanvo_PixelA8_Access, Kanvo_WritebackTex_ColorAlpha>
{
    static KANVO_INLINE void Write(Kanvo_OffsetARGB32 kDest, Kanvo_PixelA8 pxTexel, const Kanvo_Polydraw_data& rData)
    {
        const Tov_UByte ubCover = Cover(rData.uiValue >> 24, pxTexel);
        if (ubCover != 0)
        {
            Kanvo_PixelARGB32_Access::BlendPixel(
                kDest, Kanvo_PixelARGB32_Access::ColorToPixel(rData.uiValue & 0x00FFFFFFU), ubCover);
        }
    }

    class Strip : public Kanvo_CoverStrip
    {
    public:
        Strip(const Kanvo_Polydraw_data& rData, Tov_UInt uiCount)
            : Kanvo_CoverStrip(Kanvo_PixelARGB32_Access::ColorToPixel(rData.uiValue & 0x00FFFFFFU), uiCount),
              m_uiAlpha(rData.uiValue >> 24)
        {
        }
        KANVO_INLINE void Take(Tov_UInt uiIndex, Kanvo_PixelA8 pxTexel)
        {
            Kanvo_CoverStrip::Take(uiIndex, Cover(m_uiAlpha, pxTexel));
        }

    private:
        Tov_UInt m_uiAlpha;
    };

private:
    static KANVO_INLINE Tov_UByte Cover(Tov_UInt uiAlpha, Kanvo_PixelA8 pxTexel)
    {
        return static_cast<Tov_UByte>((uiAlpha * pxTexel) >> 8);
    }
};

//! Whether a write-back has a Strip.
template <class Writeback, class = void>
struct Kanvo_HasStrip : std::false_type
{
};
template <class Writeback>
struct Kanvo_HasStrip<Writeback, std::void_t<typename Writeback::Strip>> : std::true_type
{
};

//! Whether a texture has the pixels of a row among its texels, so that texels change while the row is drawn.
template <class TextureOffset>
inline Tov_Bool Kanvo_TextureMeets(TextureOffset kTexture, Tov_UInt uiRows, Tov_UInt uiN, const Kanvo_PixelARGB32* kRow,
                                   Tov_UInt uiCount)
{
    const auto uiTexture = reinterpret_cast<std::uintptr_t>(kTexture);
    const auto uiRow     = reinterpret_cast<std::uintptr_t>(kRow);
    const auto uiBytes   = (static_cast<std::uintptr_t>(uiRows) << uiN) * sizeof *kTexture;
    return uiRow < uiTexture + uiBytes && uiTexture < uiRow + uiCount * sizeof *kRow;
}

//! Spans of the row that holds y, from the pixel that holds x1 to the one that holds x2, all 16.16. Pixels outside the
//! bitmap are left out. rTexture: the texture's first texel; uiN, uiMaskX, uiMaskY: see Kanvo_ReadTexel.
template <class Access, class Writeback>
class Kanvo_HSpanRenderTex
{
public:
    using Texture = typename Writeback::Texture::Offset;

    //! u, v: texel position at pixel 0 of the row; ux, vx: their change per pixel. All 16.16, and all sums wrap.
    static KANVO_INLINE void RenderSpan(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2,
                                        Texture rTexture, Tov_Fixed u, Tov_Fixed v, Tov_Fixed ux, Tov_Fixed vx,
                                        Tov_UInt uiN, Tov_UInt uiMaskX, Tov_UInt uiMaskY,
                                        const Kanvo_Polydraw_data& rData)
    {
        const Tov_Int x1i = x1 >> 16;
        const Tov_Int x2i = x2 >> 16;
        const Pen     kPen(pBitmap, y, x1);
        Run(kPen, kPen.Inside({0, x2i - x1i}), rTexture, Tov_FixAdd(u, Tov_IntMul(x1i, ux)),
            Tov_FixAdd(v, Tov_IntMul(x1i, vx)), ux, vx, uiN, uiMaskX, uiMaskY, rData);
    }

    //! uz, vz, zi: texel position times depth, and depth, at pixel 0 of the row; ux, vx, zx: their change per pixel. The
    //! quotients are formed every 8 pixels and at the end, and run in a straight line between. A depth of 0 gives a
    //! position that saturates, or 0.
    static void RenderSpanSubdivision(Kanvo_Bitmap* pBitmap, Tov_Fixed y, Tov_Fixed x1, Tov_Fixed x2, Texture rTexture,
                                      Tov_Float uz, Tov_Float vz, Tov_Float zi, Tov_Float ux, Tov_Float vx,
                                      Tov_Float zx, Tov_UInt uiN, Tov_UInt uiMaskX, Tov_UInt uiMaskY,
                                      const Kanvo_Polydraw_data& rData)
    {
        const Tov_Int x1i    = x1 >> 16;
        const Tov_Int x2i    = x2 >> 16;
        const Tov_Int iWidth = x2i - x1i + 1;
        if (iWidth <= 0)
        {
            return;
        }
        const Pen             kPen(pBitmap, y, x1);
        const Kanvo_SpanRange kInside = kPen.Inside({0, iWidth - 1});
        const auto            vX1     = static_cast<Tov_Float>(x1i);
        Depth                 kDepth{uz + vX1 * ux, vz + vX1 * vx, zi + vX1 * zx};
        Position              kLeft(kDepth);
        for (Tov_Int iPixel = 0; iPixel < iWidth;)
        {
            const Tov_Int iCount = iWidth - iPixel < STEP ? iWidth - iPixel : STEP;
            kDepth.Move(static_cast<Tov_Float>(iCount), ux, vx, zx);
            const Position  kRight(kDepth);
            const Tov_Fixed du     = Share(Tov_FixSub(kRight.u, kLeft.u), iCount);
            const Tov_Fixed dv     = Share(Tov_FixSub(kRight.v, kLeft.v), iCount);
            Kanvo_SpanRange kRange = kInside;
            kRange.Limit(iPixel, iPixel + iCount - 1);
            Run(kPen, kRange, rTexture, Tov_FixSub(kLeft.u, Tov_IntMul(iPixel, du)),
                Tov_FixSub(kLeft.v, Tov_IntMul(iPixel, dv)), du, dv, uiN, uiMaskX, uiMaskY, rData);
            kLeft = kRight;
            iPixel += iCount;
        }
    }

private:
    using Pen = Kanvo_SpanPen<Kanvo_AxisH<Access>, Access>;

    static constexpr Tov_Int STEP = 8;  //!< pixels from one quotient to the next

    struct Depth
    {
        Tov_Float uz;
        Tov_Float vz;
        Tov_Float zi;

        KANVO_INLINE void Move(Tov_Float vPixels, Tov_Float ux, Tov_Float vx, Tov_Float zx)
        {
            uz += vPixels * ux;
            vz += vPixels * vx;
            zi += vPixels * zx;
        }
    };

    struct Position
    {
        Tov_Fixed u;
        Tov_Fixed v;

        explicit KANVO_INLINE Position(const Depth& kDepth)
        {
            const Tov_Float vScale = 1.0F / kDepth.zi;
            u                      = Tov_FltToFix(kDepth.uz * vScale);
            v                      = Tov_FltToFix(kDepth.vz * vScale);
        }
    };

    //! fxWhole / iCount, truncated; without a division where iCount is a whole step.
    static KANVO_INLINE Tov_Fixed Share(Tov_Fixed fxWhole, Tov_Int iCount)
    {
        return iCount == STEP ? fxWhole / STEP : fxWhole / iCount;
    }

    //! Pixels kRange of a span whose pixel 0 has the position (u, v).
    static KANVO_INLINE void Run(const Pen& kPen, Kanvo_SpanRange kRange, Texture rTexture, Tov_Fixed u, Tov_Fixed v,
                                 Tov_Fixed ux, Tov_Fixed vx, Tov_UInt uiN, Tov_UInt uiMaskX, Tov_UInt uiMaskY,
                                 const Kanvo_Polydraw_data& rData)
    {
        if (kRange.iFirst > kRange.iLast)
        {
            return;
        }
        u                  = Tov_FixAdd(u, Tov_IntMul(kRange.iFirst, ux));
        v                  = Tov_FixAdd(v, Tov_IntMul(kRange.iFirst, vx));
        auto       kOffset = kPen.At(kRange.iFirst);
        const auto uiCount = static_cast<Tov_UInt>(kRange.iLast - kRange.iFirst + 1);
        if constexpr (Kanvo_HasStrip<Writeback>::value)
        {
            if (uiCount >= KANVO_FEW_PIXELS &&
                !Kanvo_TextureMeets(rTexture, (uiMaskY >> 16) + 1, uiN, kOffset, uiCount))
            {
                typename Writeback::Strip kStrip(rData, uiCount);
                for (Tov_UInt uiDone = 0; uiDone < uiCount; uiDone += KANVO_STRIP)
                {
                    const Tov_UInt uiPart = std::min(KANVO_STRIP, uiCount - uiDone);
                    for (Tov_UInt uiIndex = 0; uiIndex < uiPart; ++uiIndex)
                    {
                        kStrip.Take(uiIndex, Kanvo_ReadTexel<typename Writeback::Texture>(rTexture, u, v, uiMaskX,
                                                                                          uiMaskY, uiN));
                        u = Tov_FixAdd(u, ux);
                        v = Tov_FixAdd(v, vx);
                    }
                    kStrip.Write(kOffset + uiDone, uiPart);
                }
                return;
            }
        }
        for (Tov_UInt uiPixel = 0; uiPixel < uiCount; ++uiPixel)
        {
            Writeback::BlendTexel(rTexture, kOffset, u, v, uiMaskX, uiMaskY, uiN, rData);
            kPen.Step(kOffset);
            u = Tov_FixAdd(u, ux);
            v = Tov_FixAdd(v, vx);
        }
    }
};

#endif
