// Kanvo_ImageCheck: header first, then token by token. Every sum is taken in 64 bits, every read preceded by its bound.
#include "Kanvo_ImageCheck.h"

#include "Kanvo_PrecompiledImageInfo.h"

namespace
{

using Info = Kanvo_PrecompiledImageInfo;

constexpr Tov_UInt MAX_SIDE = 32767;  // what 16.16 coordinates can name

//! Units an image of this kind has indices for.
constexpr Tov_UInt IndexRange(Tov_UInt uiBits)
{
    return uiBits == 8 ? 256U : 65536U;
}

Tov_Bool UnitMatches(Tov_UByte ubBits, BitmapType eType)
{
    switch (eType)
    {
    case BM_RGB32RLE8: return ubBits == 8;
    case BM_RGB32RLE16: return ubBits == 16;
    default: return ubBits == 8 || ubBits == 16;
    }
}

Kanvo_ImageReport CheckHeader(const Info& kInfo, std::size_t uiBytes, BitmapType eType)
{
    if (kInfo.uiKanvo != Info::WORD_KANVO)
    {
        return {IMAGE_NOT_KANVO, offsetof(Info, uiKanvo)};
    }
    if (kInfo.ui_RLE != Info::WORD_RLE)
    {
        return {IMAGE_NOT_RLE, offsetof(Info, ui_RLE)};
    }
    if (kInfo.ubVersion != Info::VERSION)
    {
        return {IMAGE_UNKNOWN_VERSION, offsetof(Info, ubVersion)};
    }
    if (!UnitMatches(kInfo.ubRLEBits, eType))
    {
        return {IMAGE_WRONG_UNIT, offsetof(Info, ubRLEBits)};
    }
    if (kInfo.uiWidth == 0 || kInfo.uiWidth > MAX_SIDE)
    {
        return {IMAGE_BAD_SIZE, offsetof(Info, uiWidth)};
    }
    if (kInfo.uiHeight == 0 || kInfo.uiHeight > MAX_SIDE)
    {
        return {IMAGE_BAD_SIZE, offsetof(Info, uiHeight)};
    }
    const std::uint64_t uiPaletteEnd = sizeof(Info) + std::uint64_t{4} * kInfo.uiPaletteColorCount;
    if (kInfo.uiPaletteColorCount == 0 || kInfo.uiPaletteColorCount > IndexRange(kInfo.ubRLEBits) ||
        uiPaletteEnd > uiBytes)
    {
        return {IMAGE_BAD_PALETTE, offsetof(Info, uiPaletteColorCount)};
    }
    const Tov_UInt uiStart = kInfo.uiStartIndexOfColorIndices;
    if (uiStart < uiPaletteEnd || uiStart > uiBytes || uiStart % (kInfo.ubRLEBits / 8U) != 0)
    {
        return {IMAGE_BAD_START, offsetof(Info, uiStartIndexOfColorIndices)};
    }
    return {IMAGE_GOOD, 0};
}

template <class Unit>
Kanvo_ImageReport CheckTokens(const Info& kInfo, std::size_t uiBytes)
{
    const auto* const   puUnits  = static_cast<const Unit*>(kInfo.GetRLEDataBytes());
    const std::size_t   uiUnits  = (uiBytes - kInfo.uiStartIndexOfColorIndices) / sizeof(Unit);
    const std::uint64_t uiPixels = static_cast<std::uint64_t>(kInfo.uiWidth) * kInfo.uiHeight;
    const auto          kReport  = [&](Kanvo_ImageFault eFault, std::size_t uiUnit) {
        return Kanvo_ImageReport{eFault, kInfo.uiStartIndexOfColorIndices + uiUnit * sizeof(Unit)};
    };

    std::uint64_t uiDone = 0;
    std::size_t   uiUnit = 0;
    for (;;)
    {
        const std::size_t uiToken = uiUnit;
        if (uiUnits - uiUnit < 2)
        {
            return kReport(uiDone == uiPixels ? IMAGE_NO_END : IMAGE_TOKEN_CUT_OFF, uiToken);
        }
        const Tov_Bool bLiteral = puUnits[uiUnit] == 0;
        const Tov_UInt uiCount  = puUnits[bLiteral ? uiUnit + 1 : uiUnit];
        if (uiCount == 0)
        {
            return uiDone == uiPixels ? Kanvo_ImageReport{IMAGE_GOOD, 0} : kReport(IMAGE_ENDS_EARLY, uiToken);
        }
        if (uiDone == uiPixels)
        {
            return kReport(IMAGE_NO_END, uiToken);
        }
        uiUnit += bLiteral ? 2 : 1;
        const std::size_t uiIndices = bLiteral ? uiCount : 1;
        if (uiUnits - uiUnit < uiIndices)
        {
            return kReport(IMAGE_TOKEN_CUT_OFF, uiToken);
        }
        for (std::size_t uiIndex = 0; uiIndex < uiIndices; ++uiIndex)
        {
            if (puUnits[uiUnit + uiIndex] >= kInfo.uiPaletteColorCount)
            {
                return kReport(IMAGE_INDEX_TOO_LARGE, uiUnit + uiIndex);
            }
        }
        if (uiPixels - uiDone < uiCount)
        {
            return kReport(IMAGE_TOO_MANY_PIXELS, uiToken);
        }
        uiUnit += uiIndices;
        uiDone += uiCount;
    }
}

}  // namespace

Kanvo_ImageReport Kanvo_CheckImage(const void* pvData, std::size_t uiBytes, BitmapType eType)
{
    if (pvData == nullptr || uiBytes < sizeof(Info))
    {
        return {IMAGE_TOO_SHORT, pvData == nullptr ? 0 : uiBytes};
    }
    if (reinterpret_cast<std::uintptr_t>(pvData) % alignof(Info) != 0)
    {
        return {IMAGE_MISALIGNED, 0};
    }
    const auto&             kInfo   = *static_cast<const Info*>(pvData);
    const Kanvo_ImageReport kHeader = CheckHeader(kInfo, uiBytes, eType);
    if (kHeader.eFault != IMAGE_GOOD)
    {
        return kHeader;
    }
    return kInfo.ubRLEBits == 8 ? CheckTokens<Tov_UByte>(kInfo, uiBytes) : CheckTokens<Tov_UShort>(kInfo, uiBytes);
}

const char* Kanvo_ImageFaultText(Kanvo_ImageFault eFault)
{
    switch (eFault)
    {
    case IMAGE_GOOD: return "image is good";
    case IMAGE_TOO_SHORT: return "data is shorter than an image header";
    case IMAGE_MISALIGNED: return "data does not start at a multiple of four bytes";
    case IMAGE_NOT_KANVO: return "first identification word is not that of an image";
    case IMAGE_NOT_RLE: return "second identification word is not that of an image";
    case IMAGE_UNKNOWN_VERSION: return "version of the image is unknown";
    case IMAGE_WRONG_UNIT: return "token unit is not 8 or 16 bits as the bitmap type wants";
    case IMAGE_BAD_SIZE: return "width or height is not between 1 and 32767";
    case IMAGE_BAD_PALETTE: return "palette is empty, too large or beyond the data";
    case IMAGE_BAD_START: return "tokens start inside the palette, misaligned or beyond the data";
    case IMAGE_TOKEN_CUT_OFF: return "a token reaches beyond the data";
    case IMAGE_INDEX_TOO_LARGE: return "an index names no palette entry";
    case IMAGE_TOO_MANY_PIXELS: return "a token reaches beyond the last pixel";
    case IMAGE_NO_END: return "the end token is missing";
    case IMAGE_ENDS_EARLY: return "the image ends before its last pixel";
    case IMAGE_NO_MEMORY: return "no memory for a copy of the image";
    default: return "unknown fault";
    }
}
