// Kanvo_Object: allocation of bitmap buffers, and the area of the polygons, which is one of them. Each allocation carries a
// record in front of its pixels and is kept in a list, because a bitmap hands every buffer back, also one that its caller
// brought along: only what stands in the list may be freed, and a foreign buffer must not be read to find out.
#include "Kanvo_Object.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "Kanvo_Enums.h"
#include "Kanvo_PolyBuffers.h"
#include "Trak_Assert.h"

struct Kanvo::Block
{
    Block* pkNext;
    void*  pMemory;  // what std::malloc returned
};

namespace
{

// Record and alignment slack in front of the pixels; sizeof(Kanvo::Block) is two pointers.
constexpr std::size_t OVERHEAD = Kanvo::BUFFER_ALIGNMENT + 2 * sizeof(void*);

void* AlignedPixels(void* pMemory)
{
    const auto uiAddress = reinterpret_cast<std::uintptr_t>(pMemory) + OVERHEAD;
    return reinterpret_cast<void*>(uiAddress & ~static_cast<std::uintptr_t>(Kanvo::BUFFER_ALIGNMENT - 1));
}

}  // namespace

void Kanvo::CheckReturned() const
{
    // Bitmaps that live on still use their memory: leaking it is the lesser evil.
    TRAK_CHECK(m_pkBlocks == nullptr, "bitmaps outlive the library object");
}

Tov_UInt Kanvo::BytesPerPixel(Tov_UInt uiType)
{
    switch (uiType)
    {
    case BM_RGB32:
    case BM_ARGB32: return 4;
    case BM_RGB565:
    case BM_RGB555: return 2;
    case BM_ALPHA8:
    case BM_ALPHA5_2: return 1;
    default: return 0;
    }
}

void* Kanvo::Allocate(Tov_UInt uiType, Tov_UByte ubBBT, Tov_UInt uiWidth, Tov_UInt uiHeight)
{
    static_assert(OVERHEAD == BUFFER_ALIGNMENT + sizeof(Block));

    // The row is at most 2^34 bytes, so neither product nor comparison wraps.
    const std::uint64_t uiRowBytes = static_cast<std::uint64_t>(uiWidth) * BytesPerPixel(uiType);
    if (ubBBT == BBT_ROM || uiRowBytes == 0 || uiHeight == 0 || uiRowBytes > MAX_BUFFER_BYTES / uiHeight)
    {
        return nullptr;
    }
    void* const pMemory = std::malloc(static_cast<std::size_t>(uiRowBytes) * uiHeight + OVERHEAD);
    if (pMemory == nullptr)
    {
        return nullptr;
    }
    void* const pPixels = AlignedPixels(pMemory);
    m_pkBlocks          = new (static_cast<Block*>(pPixels) - 1) Block{m_pkBlocks, pMemory};
    return pPixels;
}

void Kanvo::Free(void* pBuffer, Tov_UByte ubBBT)
{
    if (ubBBT == BBT_ROM || pBuffer == nullptr)
    {
        return;
    }
    for (Block** ppkLink = &m_pkBlocks; *ppkLink != nullptr; ppkLink = &(*ppkLink)->pkNext)
    {
        Block* const pkBlock = *ppkLink;
        if (pkBlock + 1 == pBuffer)
        {
            *ppkLink = pkBlock->pkNext;
            std::free(pkBlock->pMemory);
            return;
        }
    }
}

Tov_Bool Kanvo::ReservePolygons(Tov_UInt uiCorners, Tov_UInt uiRows)
{
    if (uiCorners <= Kanvo_PolyGetCorners() && uiRows <= Kanvo_PolyGetRows())
    {
        return true;
    }
    uiCorners                 = std::max(uiCorners, Kanvo_PolyGetCorners());
    uiRows                    = std::max(uiRows, Kanvo_PolyGetRows());
    const std::size_t uiBytes = Kanvo_PolyAreaBytes(uiCorners, uiRows);
    void* const       pMemory =
        uiBytes != 0 ? AllocBitmapBuffer(BM_ALPHA8, BBT_KANVO, static_cast<Tov_UInt>(uiBytes), 1) : nullptr;
    if (pMemory == nullptr)
    {
        return false;
    }
    if (reinterpret_cast<std::uintptr_t>(pMemory) % alignof(void*) != 0)  // as good as none: bytes need no alignment
    {
        FreeBitmapBuffer(pMemory, BBT_KANVO);
        return false;
    }
    Kanvo_PolyAttachArea(pMemory, uiCorners, uiRows);
    if (m_pPolygons != nullptr)
    {
        FreeBitmapBuffer(m_pPolygons, BBT_KANVO);
    }
    m_pPolygons = pMemory;
    return true;
}

void Kanvo::ReleasePolygons()
{
    if (m_pPolygons != nullptr)
    {
        Kanvo_PolyDetachArea(m_pPolygons);
        FreeBitmapBuffer(m_pPolygons, BBT_KANVO);
        m_pPolygons = nullptr;
    }
}
