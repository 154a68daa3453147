// Kanvo_PrecompiledImageInfo: the stored form of run-length-encoded images, and the one decoder of their token stream.
// Images are made offline; the drawing code trusts them (Kanvo_ImageCheck looks at data that cannot be trusted).
//
// Little-endian: the header below (40 bytes), the palette, and from uiStartIndexOfColorIndices on the tokens. The tokens'
// unit is one byte (RLE8) or a 16-bit word (RLE16):
//
//     n, v               n pixels of palette entry v            (n not 0)
//     0, n, p1 ... pn    n pixels, one palette entry each       (n not 0)
//     0, 0               end of the image
//
// One stream covers the image row by row from the top; a token may run on into the next row.
#ifndef KANVO_PRECOMPILEDIMAGEINFO_H
#define KANVO_PRECOMPILEDIMAGEINFO_H

#include "Kanvo_ColorMath.h"
#include "Tov_Types.h"

//! The first 40 bytes of a stored image.
struct Kanvo_PrecompiledImageInfo
{
    static constexpr Tov_UInt  WORD_KANVO = 0x4F564E4BU;  //!< uiKanvo: "KNVO"
    static constexpr Tov_UInt  WORD_RLE   = 0x20454C52U;  //!< ui_RLE: "RLE "
    static constexpr Tov_UByte VERSION    = 1;

    Tov_UInt  uiKanvo;
    Tov_UInt  ui_RLE;
    Tov_UByte ubRLEBits;  //!< bits of a token unit, 8 or 16
    Tov_UByte ubVersion;
    Tov_UByte bOpaqueColorsOnly;  //!< 1 where every palette entry is opaque
    Tov_UByte ubReserved;
    Tov_UByte ubColorBitsA;  //!< bits per channel of the artwork
    Tov_UByte ubColorBitsR;
    Tov_UByte ubColorBitsG;
    Tov_UByte ubColorBitsB;
    Tov_UInt  uiWidth;
    Tov_UInt  uiHeight;
    Tov_UInt  uiPaletteColorCount;
    Tov_UInt  uiReserved1;
    Tov_UInt  uiReserved2;
    Tov_UInt  uiStartIndexOfColorIndices;  //!< bytes from the start of the header to the first token

    // An array of the length that the header states is what compilers call an extension, and what a stored form needs.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
    Kanvo_ColorARGB32 acolColorPalette[];  //!< uiPaletteColorCount words
#pragma GCC diagnostic pop

    const void* GetRLEDataBytes() const
    {
        return reinterpret_cast<const Tov_UByte*>(this) + uiStartIndexOfColorIndices;
    }
};

static_assert(sizeof(Kanvo_PrecompiledImageInfo) == 40 && alignof(Kanvo_PrecompiledImageInfo) == 4);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, uiKanvo) == 0);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, ui_RLE) == 4);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, ubRLEBits) == 8);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, ubVersion) == 9);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, bOpaqueColorsOnly) == 10);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, ubReserved) == 11);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, ubColorBitsA) == 12);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, ubColorBitsR) == 13);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, ubColorBitsG) == 14);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, ubColorBitsB) == 15);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, uiWidth) == 16);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, uiHeight) == 20);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, uiPaletteColorCount) == 24);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, uiReserved1) == 28);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, uiReserved2) == 32);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, uiStartIndexOfColorIndices) == 36);
static_assert(offsetof(Kanvo_PrecompiledImageInfo, acolColorPalette) == 40);

//! What the decoder is inside of.
enum RLECurDecompresstoken : Tov_UByte
{
    RLECURDECOMPRESSTOKEN_GETNEXT = 0,  //!< between tokens
    RLECURDECOMPRESSTOKEN_ABS     = 1,  //!< a literal
    RLECURDECOMPRESSTOKEN_RLE     = 2,  //!< a run
    RLECURDECOMPRESSTOKEN_END     = 3
};

//! Where a decoder stands. Zeroed, with the pointer at GetRLEDataBytes(), it stands at the first pixel.
template <class Unit>
struct Kanvo_RLECurDecompressInfo
{
    const Unit*           pubyCurRLEDataByte;  //!< next unread unit; a run's value, a literal's first index
    RLECurDecompresstoken eCurrentToken;
    Tov_UInt              CurrentTokenDataposition;  //!< pixels of the token consumed
    Tov_UInt              CurrentTokenDatacount;     //!< pixels in the token

    explicit Kanvo_RLECurDecompressInfo(const Kanvo_PrecompiledImageInfo* pstInfo)
        : pubyCurRLEDataByte(static_cast<const Unit*>(pstInfo->GetRLEDataBytes())),
          eCurrentToken(RLECURDECOMPRESSTOKEN_GETNEXT),
          CurrentTokenDataposition(0),
          CurrentTokenDatacount(0)
    {
    }

    //! Consumes uiPixels pixels and hands them to the sink in pieces that lie within one token: Run(entry, count) or
    //! Literal(first index, count). Behind the end token nothing is consumed.
    template <class Sink>
    KANVO_INLINE void Consume(std::uint64_t uiPixels, Sink& kSink)
    {
        if (uiPixels == 0 || eCurrentToken == RLECURDECOMPRESSTOKEN_END)
        {
            return;
        }
        // Of tokens that are consumed whole nothing is noted down.
        const Unit* puToken = pubyCurRLEDataByte - UnitsRead();
        Tov_UInt    uiDone  = CurrentTokenDataposition;
        do {
            const Unit     uFirst  = puToken[0];
            const Unit     uSecond = puToken[1];
            const Tov_UInt uiCount = uFirst != 0 ? uFirst : uSecond;
            if (uiCount == 0)
            {
                StandAt(RLECURDECOMPRESSTOKEN_END, puToken + 1, 0, 0);
                return;
            }
            const Tov_UInt uiLeft = uiCount - uiDone;
            const Tov_UInt uiTake = uiPixels < uiLeft ? static_cast<Tov_UInt>(uiPixels) : uiLeft;
            if (uFirst != 0)
            {
                kSink.Run(uSecond, uiTake);
            }
            else
            {
                kSink.Literal(puToken + 2 + uiDone, uiTake);
            }
            if (uiTake < uiLeft)
            {
                const Tov_Bool bRun = uFirst != 0;
                StandAt(bRun ? RLECURDECOMPRESSTOKEN_RLE : RLECURDECOMPRESSTOKEN_ABS, puToken + (bRun ? 1 : 2),
                        uiDone + uiTake, uiCount);
                return;
            }
            uiPixels -= uiTake;
            uiDone = 0;
            puToken += uFirst != 0 ? 2 : 2 + uiCount;
        } while (uiPixels > 0);
        StandAt(RLECURDECOMPRESSTOKEN_GETNEXT, puToken, 0, 0);
    }

    //! Consumes pixels without looking at them.
    KANVO_INLINE void Skip(std::uint64_t uiPixels)
    {
        SkipSink kSink;
        Consume(uiPixels, kSink);
    }

private:
    //! Takes decoded pixels and drops them.
    struct SkipSink
    {
        KANVO_INLINE void Run(Unit /*uEntry*/, Tov_UInt /*uiCount*/) {}
        KANVO_INLINE void Literal(const Unit* /*puIndices*/, Tov_UInt /*uiCount*/) {}
    };

    //! Units of the token begun that lie before the pointer.
    KANVO_INLINE Tov_UInt UnitsRead() const
    {
        return eCurrentToken == RLECURDECOMPRESSTOKEN_ABS ? 2 : eCurrentToken == RLECURDECOMPRESSTOKEN_RLE ? 1 : 0;
    }

    KANVO_INLINE void StandAt(RLECurDecompresstoken eToken, const Unit* puNext, Tov_UInt uiPosition, Tov_UInt uiCount)
    {
        pubyCurRLEDataByte       = puNext;
        eCurrentToken            = eToken;
        CurrentTokenDataposition = uiPosition;
        CurrentTokenDatacount    = uiCount;
    }
};

using RLE8CurDecompressInfo  = Kanvo_RLECurDecompressInfo<Tov_UByte>;
using RLE16CurDecompressInfo = Kanvo_RLECurDecompressInfo<Tov_UShort>;

#endif
