// Kanvo_Print: one character, unblended.
#include "Kanvo_Print.h"

#include "Kanvo_DebugFont.h"
#include "Kanvo_PixelARGB32_Access.h"
#include "Trak_Counters.h"

namespace
{

// KEPT: the upper bounds of the clip rectangle, inclusive elsewhere, are taken as exclusive here: a glyph that would end
// on the last column or row is left out whole. Test: AGlyphThatEndsOnTheLastClipColumnOrRowIsLeftOut.
Tov_Bool FitsClip(const Kanvo_Bitmap* pkDest, std::uint64_t uiX, std::uint64_t uiY, Tov_Int iWidth, Tov_Int iHeight)
{
    return uiX >= pkDest->GetClipMinX() && uiY >= pkDest->GetClipMinY() &&
           uiX + static_cast<Tov_UInt>(iWidth) <= pkDest->GetClipMaxX() &&
           uiY + static_cast<Tov_UInt>(iHeight) <= pkDest->GetClipMaxY();
}

}  // namespace

Tov_Int Kanvo_DebugFont_Print::Blit_Char(Tov_UByte ubChar, Kanvo_Bitmap* pkDest, Tov_UInt uiX, Tov_UInt uiY,
                                         Kanvo_Color kColor)
{
    using Access = Kanvo_PixelARGB32_Access;

    const Tov_UByte* pubGlyph = nullptr;
    Tov_Int          iWidth   = 0;
    Tov_Int          iHeight  = 0;
    if (!DebugFont_GetChar(ubChar, pubGlyph, iWidth, iHeight))
    {
        return 0;
    }
    if (pkDest->GetBuffer() != nullptr && FitsClip(pkDest, uiX, uiY, iWidth, iHeight))
    {
        const Trak_PerfScope    kScope(g_kPerf_DebugText);
        const Kanvo_PixelARGB32 pxColor = Access::ColorToPixel(kColor);
        Kanvo_OffsetARGB32      kLine;
        Access::GetOffset(pkDest, uiX, uiY, kLine);
        for (Tov_Int iRow = 0; iRow < iHeight; ++iRow)
        {
            for (Tov_Int iColumn = 0; iColumn < iWidth; ++iColumn, ++pubGlyph)
            {
                if (*pubGlyph != 0)
                {
                    Access::PutPixel(kLine + iColumn, pxColor);
                }
            }
            Access::IncY(pkDest, kLine);
        }
    }
    return iWidth;
}
