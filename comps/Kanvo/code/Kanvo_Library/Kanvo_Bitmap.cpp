// Kanvo_Bitmap: life of the buffer, clipping, view, and text layout; everything that does not touch a pixel.
#include "Kanvo_Bitmap.h"

#include <algorithm>

#include "Kanvo_ColorMath.h"
#include "Kanvo_DebugFont.h"
#include "Kanvo_Object.h"
#include "Kanvo_Screen.h"
#include "Trak_Assert.h"

namespace
{

constexpr Tov_UInt MAX_EXTENT = 0x80000000U;  // one more than the last coordinate a Tov_Int can name

//! Pixels iFirst to iEnd - 1 of one axis; wide enough that no sum of 32-bit arguments wraps.
struct AxisSpan
{
    std::int64_t iFirst;
    std::int64_t iEnd;

    void Intersect(std::int64_t iMin, std::int64_t iMax)  // both inclusive
    {
        iFirst = std::max(iFirst, iMin);
        iEnd   = std::min(iEnd, iMax + 1);
    }
    Tov_Bool IsEmpty() const { return iFirst >= iEnd; }
    Tov_UInt Length() const { return static_cast<Tov_UInt>(iEnd - iFirst); }
};

//! One axis of a blit, in destination coordinates: source position s shows at s + iMove.
struct AxisBlit
{
    AxisSpan     kSpan;
    std::int64_t iMove;

    AxisBlit(Tov_UInt uiLength, Tov_UInt uiSrc, Tov_Int iDst)
        : kSpan{iDst, static_cast<std::int64_t>(iDst) + uiLength},
          iMove(static_cast<std::int64_t>(iDst) - uiSrc)
    {
    }
    void ClipToSource(Tov_UInt uiExtent) { kSpan.Intersect(iMove, iMove + uiExtent - 1); }
    void Store(Tov_UInt& uiLength, Tov_UInt& uiSrc, Tov_Int& iDst) const
    {
        uiLength = kSpan.Length();
        uiSrc    = static_cast<Tov_UInt>(kSpan.iFirst - iMove);
        iDst     = static_cast<Tov_Int>(kSpan.iFirst);
    }
};

Tov_UInt LastPixel(Tov_UInt uiExtent)
{
    return std::min(uiExtent, MAX_EXTENT) - 1;
}

//! Walks a text cell by cell, in 64 bits so that a position near the end of the coordinates cannot come back round.
struct TextCursor
{
    std::uint64_t uiLeft;
    std::uint64_t uiX;
    std::uint64_t uiY;

    //! Moves over a control character; false for one that is to be drawn.
    Tov_Bool Control(char cChar)
    {
        constexpr auto uiTab = std::uint64_t{8} * Kanvo_DebugFont_Width;
        if (cChar == '\n')
        {
            uiX = uiLeft;
            uiY += Kanvo_DebugFont_Height;
            return true;
        }
        if (cChar == '\t')
        {
            uiX = (uiX / uiTab + 1) * uiTab;
            return true;
        }
        return false;
    }
};

Tov_UInt ToCoordinate(std::uint64_t uiPosition)
{
    return static_cast<Tov_UInt>(std::min<std::uint64_t>(uiPosition, UINT32_MAX));
}

}  // namespace

// ---- life -----------------------------------------------------------------------------------------------------------

Kanvo_Bitmap::Kanvo_Bitmap(Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UByte ubBBT)
    : m_uiType(BM_UNKNWON),
      m_uiWidth(uiWidth),
      m_uiHeight(uiHeight),
      m_pkScreen(nullptr),
      m_pBuffer(nullptr),
      m_uiPitch(0),
      m_bLocked(false),
      m_ubBBT(ubBBT),
      m_kPrescaleMatrix(Kanvo_Matrix3::IDENTITY),
      m_uiClipMinX(1),
      m_uiClipMinY(1),
      m_uiClipMaxX(0),
      m_uiClipMaxY(0),
      m_kViewCenter(Kanvo_Vector2::ZERO)
{
    Kanvo_Bitmap::SetCliprect(0, 0, UINT32_MAX, UINT32_MAX);
}

Kanvo_Bitmap::~Kanvo_Bitmap() = default;

void Kanvo_Bitmap::Release()
{
    delete this;
}

void Kanvo_Bitmap::AttachBuffer(BitmapType eType, Kanvo_Screen* pkScreen, void* pBuffer, Tov_UInt uiPitch)
{
    m_uiType   = eType;
    m_pkScreen = pkScreen;

    const Tov_UInt      uiPixelBytes = Kanvo::BytesPerPixel(eType);
    const std::uint64_t uiRowBytes   = static_cast<std::uint64_t>(m_uiWidth) * uiPixelBytes;
    const std::uint64_t uiStride     = uiPitch != 0 ? uiPitch : uiRowBytes;

    const Tov_Bool bFits = uiStride <= Kanvo::MAX_BUFFER_BYTES && m_uiHeight < MAX_EXTENT;
    TRAK_CHECK(bFits, "bitmap is too large");
    const Tov_Bool bPitch = uiStride >= uiRowBytes && uiStride % uiPixelBytes == 0;
    TRAK_CHECK(bPitch, "bitmap pitch does not suit its width");
    const Tov_Bool bAligned = reinterpret_cast<std::uintptr_t>(pBuffer) % uiPixelBytes == 0;
    TRAK_CHECK(bAligned, "bitmap buffer is not aligned to its pixels");
    if (!bFits || !bPitch || !bAligned)
    {
        return;
    }
    if (pBuffer == nullptr && pkScreen != nullptr && pkScreen->GetOwner() != nullptr)
    {
        pBuffer = pkScreen->GetOwner()->AllocBitmapBuffer(eType, m_ubBBT,
                                                          static_cast<Tov_UInt>(uiStride / uiPixelBytes), m_uiHeight);
    }
    TRAK_CHECK(pBuffer != nullptr, "no memory for the bitmap");
    m_pBuffer = pBuffer;
    m_uiPitch = static_cast<Tov_UInt>(uiStride);
}

void Kanvo_Bitmap::DetachBuffer()
{
    if (m_pkScreen != nullptr && m_pkScreen->GetOwner() != nullptr)
    {
        m_pkScreen->GetOwner()->FreeBitmapBuffer(m_pBuffer, m_ubBBT);
    }
    m_pBuffer = nullptr;
}

void* Kanvo_Bitmap::LockBuffer()
{
    TRAK_CHECK(!m_bLocked, "bitmap already locked");
    m_bLocked = true;
    return m_pBuffer;
}

Tov_Bool Kanvo_Bitmap::BeginDraw() const
{
    TRAK_CHECK(m_bLocked, "bitmap not locked");
    TRAK_CHECK(m_pBuffer != nullptr, "bitmap has no buffer");
    return m_pBuffer != nullptr;
}

// ---- clipping -------------------------------------------------------------------------------------------------------

void Kanvo_Bitmap::SetCliprect(Tov_UInt uiMinX, Tov_UInt uiMinY, Tov_UInt uiMaxX, Tov_UInt uiMaxY)
{
    const Tov_Bool bVisible = m_uiWidth > 0 && m_uiHeight > 0 && uiMinX <= std::min(uiMaxX, LastPixel(m_uiWidth)) &&
                              uiMinY <= std::min(uiMaxY, LastPixel(m_uiHeight));
    m_uiClipMinX = bVisible ? uiMinX : 1;
    m_uiClipMinY = bVisible ? uiMinY : 1;
    m_uiClipMaxX = bVisible ? std::min(uiMaxX, LastPixel(m_uiWidth)) : 0;
    m_uiClipMaxY = bVisible ? std::min(uiMaxY, LastPixel(m_uiHeight)) : 0;
}

Tov_Bool Kanvo_Bitmap::ClipFillrect(Tov_UInt& uiWidth, Tov_UInt& uiHeight, Tov_Int& iX, Tov_Int& iY) const
{
    AxisSpan kX{iX, static_cast<std::int64_t>(iX) + uiWidth};
    AxisSpan kY{iY, static_cast<std::int64_t>(iY) + uiHeight};
    kX.Intersect(m_uiClipMinX, m_uiClipMaxX);
    kY.Intersect(m_uiClipMinY, m_uiClipMaxY);
    if (kX.IsEmpty() || kY.IsEmpty())
    {
        return false;
    }
    uiWidth  = kX.Length();
    uiHeight = kY.Length();
    iX       = static_cast<Tov_Int>(kX.iFirst);
    iY       = static_cast<Tov_Int>(kY.iFirst);
    return true;
}

Tov_Bool Kanvo_Bitmap::ClipBlitrect(const Kanvo_Bitmap* pkSource, Tov_UInt& uiWidth, Tov_UInt& uiHeight,
                                    Tov_UInt& uiSrcX, Tov_UInt& uiSrcY, Tov_Int& iDstX, Tov_Int& iDstY) const
{
    AxisBlit kX(uiWidth, uiSrcX, iDstX);
    AxisBlit kY(uiHeight, uiSrcY, iDstY);
    kX.ClipToSource(pkSource->m_uiWidth);
    kY.ClipToSource(pkSource->m_uiHeight);
    kX.kSpan.Intersect(m_uiClipMinX, m_uiClipMaxX);
    kY.kSpan.Intersect(m_uiClipMinY, m_uiClipMaxY);
    if (kX.kSpan.IsEmpty() || kY.kSpan.IsEmpty())
    {
        return false;
    }
    kX.Store(uiWidth, uiSrcX, iDstX);
    kY.Store(uiHeight, uiSrcY, iDstY);
    return true;
}

// ---- settings -------------------------------------------------------------------------------------------------------

Kanvo_Screen* Kanvo_Bitmap::GetScreen() const
{
    return m_pkScreen;
}

Tov_MixedType Kanvo_Bitmap::GetState(RenderStates eSlot) const
{
    if (m_pkScreen != nullptr)
    {
        return m_pkScreen->GetRenderState().GetState(eSlot);
    }
    Tov_MixedType kNone;
    kNone.pvValue = nullptr;
    return kNone;
}

void Kanvo_Bitmap::SetPalette(Tov_UInt /*uiIndex*/, Tov_UInt /*uiColor*/)
{
    TRAK_CHECK(false, "bitmap has no palette");
}

Tov_UInt Kanvo_Bitmap::GetPalette(Tov_UInt /*uiIndex*/)
{
    TRAK_CHECK(false, "bitmap has no palette");
    return 0;
}

Kanvo_Color Kanvo_Bitmap::PremulColorFromARGB(Tov_UByte ubA, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const
{
    return ColorFromARGB(ubA, Kanvo_MulByte(ubR, ubA), Kanvo_MulByte(ubG, ubA), Kanvo_MulByte(ubB, ubA));
}

void Kanvo_Bitmap::SetView(Tov_Value vZoom, const Kanvo_Vector2& kViewCenter, const Kanvo_Vector2& kScreenCenter,
                           Tov_Value vAngle, Tov_Value vScaleX, Tov_Value vScaleY)
{
    const Kanvo_Matrix3 kToOrigin =
        Kanvo_Matrix3::ScaleRotateMove({1.0F, 1.0F}, 0.0F, {-kViewCenter.x, -kViewCenter.y});
    const Kanvo_Matrix3 kToScreen =
        Kanvo_Matrix3::ScaleRotateMove({vZoom * vScaleX, vZoom * vScaleY}, vAngle, kScreenCenter);
    m_kViewCenter     = kViewCenter;
    m_kPrescaleMatrix = kToScreen * kToOrigin;
}

void Kanvo_Bitmap::RecalculatePrescaleMatrix(Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_Value vLeft, Tov_Value vTop,
                                             Tov_Value vRight, Tov_Value vBottom)
{
    // Written so that NaN counts as no extent.
    const Tov_Bool bExtent = (vRight > vLeft || vRight < vLeft) && (vBottom > vTop || vBottom < vTop);
    TRAK_CHECK(bExtent, "view has no extent");
    if (bExtent)
    {
        const Tov_Value vScaleX = static_cast<Tov_Value>(uiWidth) / (vRight - vLeft);
        const Tov_Value vScaleY = static_cast<Tov_Value>(uiHeight) / (vBottom - vTop);
        m_kPrescaleMatrix =
            Kanvo_Matrix3::ScaleRotateMove({vScaleX, vScaleY}, 0.0F, {-vLeft * vScaleX, -vTop * vScaleY});
    }
}

// ---- text -----------------------------------------------------------------------------------------------------------

void Kanvo_Bitmap::DebugText(const char* pcText, Tov_UInt uiX, Tov_UInt uiY, Tov_UInt uiColor)
{
    TextCursor kCursor{uiX, uiX, uiY};
    for (; pcText != nullptr && *pcText != '\0'; ++pcText)
    {
        if (!kCursor.Control(*pcText))
        {
            const auto ubChar = static_cast<Tov_UByte>(*pcText);
            kCursor.uiX += static_cast<Tov_UInt>(
                DebugFontChar(ubChar, ToCoordinate(kCursor.uiX), ToCoordinate(kCursor.uiY), uiColor));
        }
    }
}

void Kanvo_Bitmap::DebugTextMeasure(const char* pcText, Tov_UInt uiX, Tov_UInt uiY, Tov_UInt& uiWidth,
                                    Tov_UInt& uiHeight)
{
    TextCursor    kCursor{uiX, uiX, uiY};
    std::uint64_t uiRight = uiX;
    for (; pcText != nullptr && *pcText != '\0'; ++pcText)
    {
        const Tov_UByte* pubGlyph     = nullptr;
        Tov_Int          iGlyphWidth  = 0;
        Tov_Int          iGlyphHeight = 0;
        if (!kCursor.Control(*pcText) &&
            DebugFont_GetChar(static_cast<unsigned char>(*pcText), pubGlyph, iGlyphWidth, iGlyphHeight))
        {
            kCursor.uiX += static_cast<Tov_UInt>(iGlyphWidth);
        }
        uiRight = std::max(uiRight, kCursor.uiX);
    }
    uiWidth  = ToCoordinate(uiRight - uiX);
    uiHeight = ToCoordinate(kCursor.uiY + Kanvo_DebugFont_Height - uiY);
}
