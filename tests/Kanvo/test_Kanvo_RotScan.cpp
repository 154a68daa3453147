// Tests of the walk of Kanvo_RotScan alone, between edges that the test makes up: rows without width, rows outside the clip
// rectangle, edges that take over in the middle, fractions. The library's own edges never show most of this. What a pixel
// is drawn with is left to test_Kanvo_RotBlit.cpp.
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "BlitBitmaps.h"
#include "Dice.h"
#include "Kanvo_RotBlitParam.h"
#include "Reference_Rot.h"

namespace
{

//! What the scan below takes for the library's calculation of edges.
class ScriptedEdges
{
public:
    static constexpr Tov_Int MAX_EDGES = 3;

    static Tov_Bool RotBlitCalc(const Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_Value, Tov_Value,
                                Tov_Value, Tov_Flag, Tov_Value, Tov_Value, Tov_Value, Tov_Value,
                                Kanvo_RotBlitEdgeLeft* left, Kanvo_RotBlitEdgeRight* right, Tov_Int& leftCount,
                                Tov_Int& rightCount, Tov_Int& endY, Tov_Int& au, Tov_Int& av)
    {
        if (!s_script) return false;
        for (const auto& edge : s_script->left)
        {
            *left++ = {edge.y1, edge.dx,    edge.sx,    edge.v,      edge.u,     edge.dv,
                       edge.du, edge.fineV, edge.fineU, edge.fineDv, edge.fineDu};
        }
        for (const auto& edge : s_script->right) *right++ = {edge.y1, edge.dx, edge.sx};
        leftCount  = static_cast<Tov_Int>(s_script->left.size());
        rightCount = static_cast<Tov_Int>(s_script->right.size());
        endY       = s_script->endY;
        au         = s_script->au;
        av         = s_script->av;
        return true;
    }

    static inline std::optional<reference::RotGeometry> s_script;
};

}  // namespace

#define Kanvo_RotBlitParam ScriptedEdges
#include "Kanvo_RotScan.h"
#undef Kanvo_RotBlitParam

namespace
{

using reference::Clip;
using reference::RotEdgeLeft;
using reference::RotEdgeRight;
using reference::RotGeometry;

constexpr unsigned SOURCE_SIZE = 256, WIDTH = 24, HEIGHT = 16;

constexpr std::int32_t Fixed(double pixels)
{
    return static_cast<std::int32_t>(pixels * 65536);
}

//! A call of the scan's rule: pixel, source pixel, eight bits of the source position's fraction.
struct Drawn
{
    int  x;
    int  y;
    int  column;
    int  row;
    int  fractionV;
    int  fractionU;
    bool first;

    friend bool operator==(const Drawn& one, const Drawn& other)
    {
        return one.x == other.x && one.y == other.y && one.column == other.column && one.row == other.row &&
               one.fractionV == other.fractionV && one.fractionU == other.fractionU && one.first == other.first;
    }
    friend std::ostream& operator<<(std::ostream& stream, const Drawn& drawn)
    {
        return stream << "(" << drawn.x << ", " << drawn.y << ") samples " << drawn.column << "+" << drawn.fractionV
                      << "/256, " << drawn.row << "+" << drawn.fractionU << "/256" << (drawn.first ? " first" : "");
    }
};

//! A target of 24 x 16; a source of 256 x 256 is thought of.
class Scanner
{
public:
    Scanner() : m_targetPixels(std::size_t{WIDTH} * HEIGHT), m_target(nullptr, WIDTH, HEIGHT, m_targetPixels.data()) {}

    std::vector<Drawn> Scan(const std::optional<RotGeometry>& geometry,
                            const Clip&                       clip = {0, 0, WIDTH - 1, HEIGHT - 1})
    {
        m_target.SetCliprect(static_cast<Tov_UInt>(clip.minX), static_cast<Tov_UInt>(clip.minY),
                             static_cast<Tov_UInt>(clip.maxX), static_cast<Tov_UInt>(clip.maxY));
        ScriptedEdges::s_script = geometry;
        std::vector<Drawn>             calls;
        const Kanvo_PixelARGB32* const onto = m_targetPixels.data();
        Kanvo_RotRows<Kanvo_PixelARGB32_Access>(&m_target, Kanvo_RotRequest{},
                                                [&calls, onto](const Kanvo_PixelARGB32* target, const Kanvo_RotRow& row)
                                                {
                                                    const auto place = static_cast<int>(target - onto);
                                                    for (int behind = -1; behind < row.iRest; ++behind)
                                                    {
                                                        const bool first = behind < 0;
                                                        const int  v     = first ? row.vFirst : row.v + behind * row.av;
                                                        const int  u     = first ? row.uFirst : row.u + behind * row.au;
                                                        calls.push_back({place % int{WIDTH} + behind + 1,
                                                                         place / int{WIDTH}, v >> 16, u >> 16,
                                                                         v >> 8 & 255, u >> 8 & 255, first});
                                                    }
                                                });
        return calls;
    }

private:
    std::vector<std::uint32_t> m_targetPixels;
    support::PitchedTarget     m_target;
};

//! One row at y between x and end, the source position (10.5, 20.25) at its left end, a step of (1, 0.5) to the right.
RotGeometry OneRow(int y, double x, double end)
{
    return {{{y, 0, Fixed(x), Fixed(10.5), Fixed(20.25), 0, 0}}, {{y, 0, Fixed(end)}}, y + 1, Fixed(0.5), Fixed(1)};
}

}  // namespace

TEST(RotScan, WithoutEdgesNothingIsDrawn)
{
    EXPECT_TRUE(Scanner().Scan({}).empty());
}

TEST(RotScan, ARowRunsFromTheFloorOfItsLeftToBelowTheFloorOfItsRightEdge)
{
    Scanner scanner;
    for (const double x : {3.0, 3.25, 3.999})
    {
        for (const double end : {6.0, 6.25, 6.999})
        {
            const auto calls = scanner.Scan(OneRow(2, x, end));
            ASSERT_EQ(calls.size(), 3U) << x << " to " << end;
            EXPECT_EQ(calls[0].x, 3);
            EXPECT_EQ(calls[2].x, 5);
            EXPECT_EQ(calls[0].y, 2);
        }
    }
}

TEST(RotScan, ARowWithoutWidthGetsOnePixel)
{
    Scanner scanner;
    for (const auto& [x, end] : {std::pair<double, double>{5, 5}, {5.75, 5.25}, {5.5, 4.5}, {5.5, 0.5}, {5.5, 1}})
    {
        const auto calls = scanner.Scan(OneRow(3, x, end));
        // the last one's right edge lies just behind the first column, the one before it in it: not right of the clip's edge
        if (end < 1)
        {
            EXPECT_TRUE(calls.empty());
            continue;
        }
        EXPECT_EQ(calls, (std::vector<Drawn>{{5, 3, 10, 20, 128, 64, true}})) << x << " to " << end;
    }
}

TEST(RotScan, ARowOutsideTheClipDrawsNothingAndItsEdgesAdvance)
{
    Scanner     scanner;
    RotGeometry geometry;
    // enters from the left: x from -6 on, two pixels wide, three pixels further right in each row
    geometry = {{{0, Fixed(3), Fixed(-6), Fixed(10), Fixed(20), Fixed(2), Fixed(1)}},
                {{0, Fixed(3), Fixed(-4)}},
                4,
                0,
                Fixed(1)};
    EXPECT_EQ(scanner.Scan(geometry), (std::vector<Drawn>{{0, 2, 14, 22, 0, 0, true},
                                                          {1, 2, 15, 22, 0, 0, false},
                                                          {3, 3, 16, 23, 0, 0, true},
                                                          {4, 3, 17, 23, 0, 0, false}}));
    // a right edge in the clip's first column leaves nothing, one pixel further right it does
    EXPECT_TRUE(scanner.Scan(OneRow(1, -2, 4.99), {4, 0, 10, 15}).empty());
    EXPECT_EQ(scanner.Scan(OneRow(1, -2, 5), {4, 0, 10, 15}).size(), 1U);
    // a left edge behind the clip's last column leaves nothing, in it one pixel
    EXPECT_TRUE(scanner.Scan(OneRow(1, 11, 20), {4, 0, 10, 15}).empty());
    EXPECT_EQ(scanner.Scan(OneRow(1, 10.99, 20), {4, 0, 10, 15}).size(), 1U);
}

TEST(RotScan, TheSecondPixelLiesTheRestOfAPixelFromTheEdgeOn)
{
    const auto calls = Scanner().Scan(OneRow(0, 3.25, 7));
    // v 10.5, then 3/4 of a step, then whole ones; u half as fast from 20.25 on
    EXPECT_EQ(calls, (std::vector<Drawn>{{3, 0, 10, 20, 128, 64, true},
                                         {4, 0, 11, 20, 64, 160, false},
                                         {5, 0, 12, 21, 64, 32, false},
                                         {6, 0, 13, 21, 64, 160, false}}));
}

TEST(RotScan, AClippedRowMovesOnByWholePixelsAndKeepsTheEdgesFraction)
{
    const auto calls = Scanner().Scan(OneRow(0, 3.25, 9), {5, 0, 7, 15});
    EXPECT_EQ(calls,
              (std::vector<Drawn>{
                  {5, 0, 12, 21, 128, 64, true}, {6, 0, 13, 21, 64, 160, false}, {7, 0, 14, 22, 64, 32, false}}));
    // left of pixel 0 a fraction still counts from the pixel it belongs to: -1.75 is 0.25 right of -2
    const auto negative = Scanner().Scan(OneRow(0, -1.75, 2));
    EXPECT_EQ(negative, (std::vector<Drawn>{{0, 0, 12, 21, 128, 64, true}, {1, 0, 13, 21, 64, 160, false}}));
}

TEST(RotScan, EdgesTakeOverInTheirRowAndNotBefore)
{
    RotGeometry geometry;
    geometry.left  = {{2, Fixed(-1), Fixed(8), Fixed(50), Fixed(60), Fixed(1), 0},
                      {4, Fixed(1), Fixed(6.5), Fixed(100), Fixed(110), 0, Fixed(1)}};
    geometry.right = {{2, Fixed(1), Fixed(9)}, {3, 0, Fixed(10)}, {5, Fixed(-1), Fixed(9)}};
    geometry.endY  = 7;
    geometry.av    = Fixed(1);
    std::vector<Drawn> firsts;
    std::vector<int>   widths;
    for (const Drawn& drawn : Scanner().Scan(geometry))
    {
        if (drawn.first)
        {
            firsts.push_back(drawn);
            widths.push_back(0);
        }
        ++widths.back();
    }
    EXPECT_EQ(firsts, (std::vector<Drawn>{{8, 2, 50, 60, 0, 0, true},
                                          {7, 3, 51, 60, 0, 0, true},
                                          {6, 4, 100, 110, 0, 0, true},
                                          {7, 5, 100, 111, 0, 0, true},
                                          {8, 6, 100, 112, 0, 0, true}}));
    EXPECT_EQ(widths, (std::vector<int>{1, 3, 4, 2, 1}));  // the last has no width
}

TEST(RotScan, RandomEdgesAreScannedAsTheNaiveReferenceDoes)
{
    const support::Seeds seeds(100000);
    Scanner              scanner;
    std::uint64_t        pixels = 0;
    std::uint64_t        empty  = 0;
    for (std::uint64_t index = 0; index < seeds.count; ++index)
    {
        support::Dice dice(seeds.first + index);
        RotGeometry   geometry;
        const int     from = dice.Between(0, 5);
        const int     most = Fixed(1.5);
        int           y    = from;
        for (int edge = dice.Between(1, 3); edge > 0; --edge, y += dice.Between(0, 5))  // some begin where one begins
        {
            RotEdgeLeft left{};
            left.y1 = y;
            left.dx = dice.Between(-2 * most, 2 * most);
            left.sx = dice.Between(Fixed(-8), Fixed(WIDTH + 4));
            left.v  = dice.Between(Fixed(100), Fixed(150));
            left.u  = dice.Between(Fixed(100), Fixed(150));
            left.dv = dice.Between(-most, most);
            left.du = dice.Between(-most, most);
            if (dice.OneIn(2))
            {
                for (std::uint16_t* fine : {&left.fineV, &left.fineU, &left.fineDv, &left.fineDu})
                {
                    *fine = static_cast<std::uint16_t>(dice.OneIn(4) ? 65535 * dice.Below(2) : dice.Below(65536));
                }
            }
            geometry.left.push_back(left);
        }
        y = from;
        for (int edge = dice.Between(1, 3); edge > 0; --edge, y += dice.Between(0, 5))
        {
            RotEdgeRight right{};
            right.y1 = y;
            right.dx = dice.Between(-2 * most, 2 * most);
            right.sx = dice.Between(Fixed(-4), Fixed(WIDTH + 8));
            geometry.right.push_back(right);
        }
        geometry.endY = dice.Between(from, HEIGHT);
        geometry.au   = dice.Between(-most, most);
        geometry.av   = dice.Between(-most, most);
        Clip clip{0, 0, WIDTH - 1, HEIGHT - 1};
        if (dice.OneIn(2))
        {
            clip.minX = dice.Between(0, WIDTH - 1);
            clip.maxX = dice.Between(static_cast<int>(clip.minX), WIDTH - 1);
        }
        std::vector<Drawn> expected;
        bool               inside = true;
        for (const reference::RotPixel& pixel : ScanRot(geometry, clip))
        {
            inside = inside && pixel.v >= 0 && pixel.v >> 16 < int{SOURCE_SIZE} && pixel.u >= 0 &&
                     pixel.u >> 16 < int{SOURCE_SIZE};
            expected.push_back({pixel.x, pixel.y, pixel.v >> 16, pixel.u >> 16, pixel.v >> 8 & 255, pixel.u >> 8 & 255,
                                pixel.firstOfRow});
        }
        if (!inside) continue;  // offsets outside the source tell nothing
        pixels += expected.size();
        if (expected.empty()) ++empty;
        ASSERT_EQ(scanner.Scan(geometry, clip), expected) << "seed " << seeds.first + index;
    }
    EXPECT_GT(pixels, seeds.count * 20);
    EXPECT_LT(empty, seeds.count / 2);
}
