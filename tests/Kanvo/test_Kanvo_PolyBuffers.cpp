// Tests of the memory of polygons: how much is built in, how more is reserved and given back, that nothing is taken while
// drawing, that a polygon too large asserts and draws nothing, and that no buffer lies in another.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "CountingLibrary.h"
#include "Kanvo_Clipper.h"
#include "Kanvo_PolyBuffers.h"
#include "Kanvo_Texture.h"
#include "PolyStage.h"
#include "RandomPolygons.h"

namespace
{

using reference::Outline;
using support::CountingLibrary;
using support::PolyStage;

constexpr std::uint32_t WHITE   = 0xFFFFFFFFU;
constexpr Tov_UInt      CORNERS = 512, ROWS = 2048;

//! A comb: teeth side by side, so that there are as many sides and half as many tops as corners.
Outline Comb(unsigned corners)
{
    Outline outline;
    for (unsigned corner = 0; corner + 1 < corners; ++corner)
        outline.push_back(
            {1.0F + 30.0F * static_cast<float>(corner) / static_cast<float>(corners), corner % 2 == 0 ? 2.0F : 20.0F});
    outline.push_back({31.0F, 30.0F});
    return outline;
}

constexpr Tov_Flag RENDERERS[] = {POLY_NONE,
                                  POLY_ANTIALIAS,
                                  POLY_NOCLIP,
                                  POLY_NOCLIP | POLY_ANTIALIAS,
                                  POLY_USE_RENDERSTATE,
                                  POLY_USE_RENDERSTATE | POLY_NOCLIP};

//! A stage whose polygons are textured with POLY_USE_RENDERSTATE.
class TexturedStage : public PolyStage
{
public:
    TexturedStage() : PolyStage(32, 32)
    {
        m_texture.Use(State());
        State().Set(TEXTUREENABLE, true);
    }

private:
    std::uint32_t      m_texel = 0xFF00FF00U;
    Kanvo_BitmapARGB32 m_picture{nullptr, 1, 1, BBT_RAM, &m_texel};
    Kanvo_Texture      m_texture{&m_picture};
};

}  // namespace

TEST(PolyBuffers, WhatIsBuiltInServes512CornersAnd2048Rows)
{
    EXPECT_EQ(Kanvo_PolyGetCorners(), CORNERS);
    EXPECT_EQ(Kanvo_PolyGetRows(), ROWS);
    support::AssertCapture asserts;
    for (const Tov_Flag renderer : RENDERERS)
    {
        TexturedStage stage;
        stage.Polygon(Comb(CORNERS), WHITE, renderer);
        EXPECT_EQ(asserts.Count(), 0U) << std::hex << renderer;
        EXPECT_GT(stage.Count(), 30) << std::hex << renderer;
    }
}

TEST(PolyBuffers, OneCornerMoreAssertsAndDrawsNothing)
{
    support::AssertCapture asserts;
    for (const Tov_Flag renderer : RENDERERS)
    {
        // anti-aliased polygons need one record less, so that one corner more may or may not fit there
        for (const unsigned more : {2U, 100U, 60000U})
        {
            TexturedStage stage;
            stage.Polygon(Comb(CORNERS + more), WHITE, renderer);
            EXPECT_EQ(asserts.Take(), support::Messages{"polygon too large"}) << std::hex << renderer;
            EXPECT_EQ(stage.Count(), 0) << std::hex << renderer;
            stage.Polygon(Comb(20), WHITE, renderer);
            EXPECT_GT(stage.Count(), 100) << "the next polygon is none the worse for it";
        }
    }
}

TEST(PolyBuffers, ReservedMemoryComesFromTheLibraryObjectAndGoesBackToIt)
{
    support::AssertCapture asserts;
    CountingLibrary        library;
    {
        ASSERT_TRUE(library.ReservePolygons(3000, 100));
        EXPECT_GE(Kanvo_PolyGetCorners(), 3000U);
        EXPECT_GE(Kanvo_PolyGetRows(), 100U);
        ASSERT_EQ(library.allocations.size(), 1U);
        EXPECT_NE(library.allocations[0].buffer, nullptr);
        TexturedStage stage;
        for (const Tov_Flag renderer : RENDERERS)
        {
            stage.Fill(0xFF000000U);
            stage.Polygon(Comb(3000), WHITE, renderer);
            EXPECT_EQ(asserts.Count(), 0U) << std::hex << renderer;
        }
        EXPECT_EQ(library.allocations.size(), 1U) << "drawing takes nothing";
        EXPECT_TRUE(library.returns.empty());
    }
    library.ReleasePolygons();
    ASSERT_EQ(library.returns.size(), 1U);
    EXPECT_EQ(library.returns[0].buffer, library.allocations[0].buffer);
    EXPECT_EQ(library.returns[0].bufferType, library.allocations[0].bufferType);
    EXPECT_EQ(Kanvo_PolyGetCorners(), CORNERS);
    EXPECT_EQ(Kanvo_PolyGetRows(), ROWS);
    library.ReleasePolygons();
    EXPECT_EQ(library.returns.size(), 1U) << "there is nothing left to give back";
    TexturedStage stage;
    stage.Polygon(Comb(3000), WHITE);
    EXPECT_EQ(asserts.Take(), support::Messages{"polygon too large"});
}

TEST(PolyBuffers, WhatIsThereAndLargeEnoughIsNotReplaced)
{
    CountingLibrary library;
    EXPECT_TRUE(library.ReservePolygons(10, 10));
    EXPECT_TRUE(library.ReservePolygons(CORNERS, ROWS));
    EXPECT_TRUE(library.ReservePolygons(0, 0));
    EXPECT_TRUE(library.allocations.empty());
    EXPECT_TRUE(library.ReservePolygons(1000, 10));
    EXPECT_TRUE(library.ReservePolygons(1000, 10));
    EXPECT_TRUE(library.ReservePolygons(999, 9));
    EXPECT_EQ(library.allocations.size(), 1U);
    EXPECT_TRUE(library.ReservePolygons(2000, 3000));
    EXPECT_GE(Kanvo_PolyGetCorners(), 2000U);
    EXPECT_GE(Kanvo_PolyGetRows(), 3000U);
    library.ReleasePolygons();
    EXPECT_EQ(library.returns.size(), library.allocations.size()) << "the first is not kept beside the second";
}

TEST(PolyBuffers, TheDestructorGivesReservedMemoryBack)
{
    support::AssertCapture asserts;
    {
        Kanvo library;
        ASSERT_TRUE(library.ReservePolygons(1000, 100));
        EXPECT_GE(Kanvo_PolyGetCorners(), 1000U);
    }
    EXPECT_EQ(Kanvo_PolyGetCorners(), CORNERS);
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(PolyBuffers, AnotherLibraryObjectMayReplaceWhatOneReserved)
{
    support::AssertCapture asserts;
    TexturedStage          stage;
    {
        CountingLibrary one;
        {
            CountingLibrary other;
            ASSERT_TRUE(one.ReservePolygons(1000, 100));
            ASSERT_TRUE(other.ReservePolygons(2000, 100));
            EXPECT_GE(Kanvo_PolyGetCorners(), 2000U);
            one.ReleasePolygons();
            EXPECT_GE(Kanvo_PolyGetCorners(), 2000U) << "it is not one's any more";
            stage.Polygon(Comb(2000), WHITE);
            EXPECT_GT(stage.Count(), 0);
            ASSERT_TRUE(one.ReservePolygons(3000, 100));
            other.ReleasePolygons();
        }
        EXPECT_GE(Kanvo_PolyGetCorners(), 3000U);
        stage.Polygon(Comb(3000), WHITE);
        one.ReleasePolygons();
        EXPECT_EQ(one.returns.size(), one.allocations.size());
    }
    EXPECT_EQ(Kanvo_PolyGetCorners(), CORNERS);
    stage.Polygon(Comb(CORNERS), WHITE);
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(PolyBuffers, WhereMemoryIsRefusedWhatWasThereStays)
{
    support::AssertCapture asserts;
    CountingLibrary        library;
    library.refuse = true;
    EXPECT_FALSE(library.ReservePolygons(3000, 100));
    EXPECT_EQ(Kanvo_PolyGetCorners(), CORNERS);
    library.refuse = false;
    ASSERT_TRUE(library.ReservePolygons(1000, 100));
    library.refuse = true;
    EXPECT_FALSE(library.ReservePolygons(3000, 100));
    EXPECT_GE(Kanvo_PolyGetCorners(), 1000U);
    TexturedStage stage;
    stage.Polygon(Comb(1000), WHITE);
    EXPECT_GT(stage.Count(), 0);
    library.refuse = false;
    for (const auto& [corners, rows] : {std::pair{0xFFFFFFFFU, 10U},
                                        {0x7FFFFFFFU, 10U},
                                        {10U, 0xFFFFFFFFU},
                                        {0xFFFFFFFFU, 0xFFFFFFFFU},
                                        {40000000U, 10U}})
    {
        EXPECT_FALSE(library.ReservePolygons(corners, rows)) << corners;
        EXPECT_EQ(Kanvo_PolyAreaBytes(corners, rows), 0U) << corners;
    }
    EXPECT_GE(Kanvo_PolyGetCorners(), 1000U);
    library.ReleasePolygons();
}

TEST(PolyBuffers, ABitmapTooHighForTheScanListAssertsWhereAntialiased)
{
    constexpr unsigned     HIGH = 2100;
    support::AssertCapture asserts;
    PolyStage              stage(3, HIGH, 0);
    const Outline          tall = {{0, 0}, {3, 0}, {3, HIGH}, {0, HIGH}};
    stage.Polygon(tall, WHITE);
    EXPECT_EQ(stage.Count(0), 3 * static_cast<int>(HIGH));
    stage.Fill(0);
    stage.Polygon(tall, WHITE, POLY_ANTIALIAS);
    EXPECT_EQ(asserts.Take(), support::Messages{"bitmap too high for anti-aliased polygons"});
    EXPECT_EQ(stage.Count(0), 0);
    Kanvo library;
    ASSERT_TRUE(library.ReservePolygons(8, HIGH));
    stage.Polygon(tall, WHITE, POLY_ANTIALIAS);
    EXPECT_EQ(stage.Count(0), 3 * static_cast<int>(HIGH));
    EXPECT_EQ(asserts.Count(), 0U);

    PolyStage just(3, ROWS, 0);
    library.ReleasePolygons();
    just.Polygon({{0, 0}, {3, 0}, {3, ROWS}, {0, ROWS}}, WHITE, POLY_ANTIALIAS);
    EXPECT_EQ(just.Count(0), 3 * static_cast<int>(ROWS));
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(PolyBuffers, ProvidersGiveRoomThatDoesNotOverlap)
{
    // as much as each of them may be asked for; a record written to one must not show in another
    const auto check = [](Tov_UInt corners, Tov_UInt rows)
    {
        using Range = std::pair<const std::uint8_t*, const std::uint8_t*>;
        std::vector<Range> plain;
        const auto         range = [](const auto* records, Tov_UInt count)
        {
            const auto* const bytes = reinterpret_cast<const std::uint8_t*>(records);
            EXPECT_NE(bytes, nullptr);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bytes) % alignof(decltype(*records)), 0U);
            return Range{bytes, bytes + sizeof(*records) * count};
        };
        const Range clip   = range(Kanvo_PolyGetClipBuffer(corners), corners);
        const Range vertex = range(Kanvo_PolyGetVertexBuffer(corners), corners);
        const Range scan   = range(Kanvo_PolyGetScanBuffer(rows + 2), rows + 2);
        const Range soft   = range(Kanvo_PolyGetAABucketBuffer(corners), corners);
        const Range edges  = range(Kanvo_PolyGetEdgeBuffer(corners + 1), corners + 1);
        const Range bucket = range(Kanvo_PolyGetBucketBuffer(corners), corners);
        const Range active = range(Kanvo_PolyGetAETBuffer(corners), corners);
        const auto  apart  = [](const std::vector<Range>& ranges)
        {
            for (std::size_t one = 0; one < ranges.size(); ++one)
                for (std::size_t other = one + 1; other < ranges.size(); ++other)
                    EXPECT_TRUE(ranges[one].second <= ranges[other].first || ranges[other].second <= ranges[one].first)
                        << one << ' ' << other;
        };
        apart({clip, vertex, scan, edges, bucket, active});
        apart({clip, vertex, scan, soft});
    };
    check(CORNERS, ROWS);
    Kanvo library;
    ASSERT_TRUE(library.ReservePolygons(777, 2333));
    check(777, 2333);
}

TEST(PolyBuffers, ReservedMemoryIsEnoughToItsVeryEnd)
{
    // memory between fences: a library that hands it out
    class FencedLibrary : public Kanvo
    {
    public:
        ~FencedLibrary() override { ReleasePolygons(); }
        void* AllocBitmapBuffer(Tov_UInt type, Tov_UByte, Tov_UInt width, Tov_UInt height) override
        {
            bytes = std::size_t{width} * height * BytesPerPixel(type);
            fence = std::make_unique<support::Fence>((bytes + 63) / 64 * 64);
            std::memset(fence->Data(), 0xCD, fence->Size());
            return fence->Data();
        }
        void FreeBitmapBuffer(void*, Tov_UByte) override {}

        std::size_t                     bytes = 0;
        std::unique_ptr<support::Fence> fence;
    };
    for (const Tov_UInt corners : {600U, 601U, 1023U})
    {
        FencedLibrary library;
        ASSERT_TRUE(library.ReservePolygons(corners, 50));
        EXPECT_GE(library.bytes, Kanvo_PolyAreaBytes(corners, 50));
        support::AssertCapture asserts;
        TexturedStage          stage;
        for (const Tov_Flag renderer : RENDERERS)
        {
            stage.Polygon(Comb(corners), WHITE, renderer);
            stage.Polygon(Comb(corners + 40), WHITE, renderer);
        }
        EXPECT_EQ(asserts.Count("polygon too large"), std::size(RENDERERS));
        EXPECT_EQ(asserts.Count(), std::size(RENDERERS));
        EXPECT_TRUE(library.fence->IsSlackUntouched());
    }
}
