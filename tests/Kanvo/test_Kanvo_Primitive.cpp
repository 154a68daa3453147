// Tests of primitives: which operations draw them, with what, in which order, where the three forms of DrawPrimitive put
// their vertices, and that these are never written to.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Kanvo_Primitive.h"
#include "PolyStage.h"
#include "RandomPolygons.h"

namespace
{

using Coords = std::vector<Kanvo_Coord2D>;

constexpr std::uint32_t COLOR = 0x80FF8040U;

//! A target that writes down what it is asked to draw, and draws it.
class Recorder : public Kanvo_BitmapARGB32
{
public:
    struct Call
    {
        std::string   what;
        Coords        points;
        std::uint32_t color;
        Tov_Flag      flags;
        float         size;
        float         endSize;
    };

    Recorder() : Kanvo_BitmapARGB32(nullptr, 64, 48, BBT_RAM, Pixels().data()) { Lock(); }

    void DrawLine(const Kanvo_Vector2& start, const Kanvo_Vector2& end, Kanvo_Color color, Tov_Flag flags,
                  Tov_Value width, Tov_Value endWidth) override
    {
        calls.push_back({"line", {{start.x, start.y}, {end.x, end.y}}, color, flags, width, endWidth});
        Kanvo_BitmapARGB32::DrawLine(start, end, color, flags, width, endWidth);
    }
    void DrawDot(Tov_Value x, Tov_Value y, Tov_Value radius, Kanvo_Color color, Tov_Flag flags) override
    {
        calls.push_back({"dot", {{x, y}}, color, flags, radius, radius});
        Kanvo_BitmapARGB32::DrawDot(x, y, radius, color, flags);
    }
    void DrawPolygon(const Kanvo_Coord2D* vertices, Tov_UInt count, Kanvo_Color color, Tov_Flag flags) override
    {
        calls.push_back({"polygon", Coords(vertices, vertices + count), color, flags, 0, 0});
        Kanvo_BitmapARGB32::DrawPolygon(vertices, count, color, flags);
    }

    int Painted() const
    {
        int count = 0;
        for (const std::uint32_t pixel : m_pixels) count += pixel != 0;
        return count;
    }

    std::vector<Call> calls;

private:
    std::vector<std::uint32_t>& Pixels()
    {
        m_pixels.assign(64 * 48, 0);
        return m_pixels;
    }
    inline static std::vector<std::uint32_t> m_pixels;
};

bool Same(const Coords& one, const Coords& other, float tolerance = 0.0F)
{
    if (one.size() != other.size()) return false;
    for (std::size_t at = 0; at < one.size(); ++at)
        if (!(std::fabs(one[at].x - other[at].x) <= tolerance && std::fabs(one[at].y - other[at].y) <= tolerance))
            return false;
    return true;
}

const Coords FIVE = {{3, 4}, {20, 6}, {40, 30}, {10.5F, 20.25F}, {2, 40}};

}  // namespace

TEST(Primitive, SaysWhatItWasMadeOf)
{
    const Kanvo_Primitive primitive(PT_LINES, FIVE.data(), 5, COLOR, 2.5F);
    EXPECT_EQ(primitive.GetType(), PT_LINES);
    EXPECT_EQ(primitive.GetVertices(), FIVE.data());
    EXPECT_EQ(primitive.GetCount(), 5U);
    EXPECT_EQ(primitive.GetColor(), COLOR);
    EXPECT_EQ(primitive.GetSize(), 2.5F);
    EXPECT_EQ(Kanvo_Primitive(PT_POINTS, FIVE.data(), 5, COLOR).GetSize(), 1.0F);
    EXPECT_EQ(Kanvo_Primitive(PT_POINTS, nullptr, 5, COLOR).GetCount(), 0U);
}

TEST(Primitive, PointsAreDotsOfItsDiameter)
{
    Recorder target;
    target.DrawPrimitive(Kanvo_Primitive(PT_POINTS, FIVE.data(), 5, COLOR, 7.0F), Kanvo_LF_ANTIALIAS);
    ASSERT_EQ(target.calls.size(), 5U);
    for (std::size_t at = 0; at < 5; ++at)
    {
        EXPECT_EQ(target.calls[at].what, "dot");
        EXPECT_TRUE(Same(target.calls[at].points, {FIVE[at]}));
        EXPECT_EQ(target.calls[at].size, 3.5F);
        EXPECT_EQ(target.calls[at].color, COLOR);
        EXPECT_EQ(target.calls[at].flags, Tov_Flag{Kanvo_LF_ANTIALIAS});
    }
    EXPECT_GT(target.Painted(), 5 * 20);
}

TEST(Primitive, LinesJoinPairsAndLeaveAnOddOneOut)
{
    for (Tov_UInt count = 0; count <= 5; ++count)
    {
        Recorder target;
        target.DrawPrimitive(Kanvo_Primitive(PT_LINES, FIVE.data(), count, COLOR, 3.0F), Kanvo_LF_ROUND_END);
        ASSERT_EQ(target.calls.size(), count / 2);
        for (std::size_t at = 0; at < target.calls.size(); ++at)
        {
            EXPECT_EQ(target.calls[at].what, "line");
            EXPECT_TRUE(Same(target.calls[at].points, {FIVE[2 * at], FIVE[2 * at + 1]}));
            EXPECT_EQ(target.calls[at].size, 3.0F);
            EXPECT_EQ(target.calls[at].endSize, 3.0F);
            EXPECT_EQ(target.calls[at].color, COLOR);
            EXPECT_EQ(target.calls[at].flags, Tov_Flag{Kanvo_LF_ROUND_END});
        }
    }
}

TEST(Primitive, AStripJoinsEachToTheNextAndDoesNotClose)
{
    for (Tov_UInt count = 0; count <= 5; ++count)
    {
        Recorder target;
        target.DrawPrimitive(Kanvo_Primitive(PT_LINESTRIP, FIVE.data(), count, COLOR), 0);
        ASSERT_EQ(target.calls.size(), count == 0 ? 0U : count - 1);
        for (std::size_t at = 0; at < target.calls.size(); ++at)
            EXPECT_TRUE(Same(target.calls[at].points, {FIVE[at], FIVE[at + 1]}));
    }
}

TEST(Primitive, APolygonIsOneOutline)
{
    Recorder target;
    target.DrawPrimitive(Kanvo_Primitive(PT_POLYGON, FIVE.data(), 5, COLOR), POLY_ANTIALIAS);
    ASSERT_EQ(target.calls.size(), 1U);
    EXPECT_EQ(target.calls[0].what, "polygon");
    EXPECT_TRUE(Same(target.calls[0].points, FIVE));
    EXPECT_EQ(target.calls[0].color, COLOR);
    EXPECT_EQ(target.calls[0].flags, Tov_Flag{POLY_ANTIALIAS});
    EXPECT_GT(target.Painted(), 300);
}

TEST(Primitive, AMatrixAndATranslationMoveEveryVertex)
{
    const Kanvo_Matrix2 matrix(0.5F, 0.25F, -0.125F, 0.75F);
    const Kanvo_Vector2 move(12.0F, 9.0F);
    Coords              expected;
    for (const Kanvo_Coord2D& at : FIVE)
        expected.push_back({0.5F * at.x + 0.25F * at.y + 12.0F, -0.125F * at.x + 0.75F * at.y + 9.0F});
    for (const Kanvo_PrimitiveType type : {PT_POINTS, PT_LINESTRIP, PT_POLYGON})
    {
        Recorder target;
        target.DrawPrimitive(Kanvo_Primitive(type, FIVE.data(), 5, COLOR, 3.0F), matrix, move, 0);
        Coords got;
        for (const Recorder::Call& call : target.calls)
        {
            EXPECT_EQ(call.size, type == PT_POLYGON  ? 0.0F
                                 : type == PT_POINTS ? 1.5F
                                                     : 3.0F)
                << "a transform changes no size";
            if (type == PT_POLYGON)
                got = call.points;
            else
                got.push_back(call.points[0]);
        }
        if (type == PT_LINESTRIP) got.push_back(target.calls.back().points[1]);
        EXPECT_TRUE(Same(got, expected, 1e-5F)) << int{type};
    }
}

TEST(Primitive, ThreeDimensionsAreDividedByDepth)
{
    const Kanvo_Matrix3 matrix(1, 0.5F, 3, 0.25F, 1, -2, 0.01F, 0.02F, 1);
    const Kanvo_Vector3 move(5, 6, 0.5F);
    Coords              expected;
    for (const Kanvo_Coord2D& at : FIVE)
    {
        const float z = 0.01F * at.x + 0.02F * at.y + 1 + 0.5F;
        expected.push_back({(at.x + 0.5F * at.y + 3 + 5) / z, (0.25F * at.x + at.y - 2 + 6) / z});
    }
    Recorder target;
    target.DrawPrimitive(Kanvo_Primitive(PT_POLYGON, FIVE.data(), 5, COLOR), matrix, move, 0);
    ASSERT_EQ(target.calls.size(), 1U);
    EXPECT_TRUE(Same(target.calls[0].points, expected, 1e-4F));
}

TEST(Primitive, AnAffineMatrixOfThreeDimensionsMeansTransformPoint)
{
    const Kanvo_Matrix3 matrix =
        Kanvo_Matrix3::ScaleRotateMove(Kanvo_Vector2(0.5F, 0.75F), 30.0F, Kanvo_Vector2(20, 8));
    Coords expected;
    for (const Kanvo_Coord2D& at : FIVE)
    {
        const Kanvo_Vector2 to = matrix.TransformPoint(Kanvo_Vector2(at.x, at.y));
        expected.push_back({to.x, to.y});
    }
    Recorder target;
    target.DrawPrimitive(Kanvo_Primitive(PT_POLYGON, FIVE.data(), 5, COLOR), matrix, Kanvo_Vector3(0, 0, 0), 0);
    ASSERT_EQ(target.calls.size(), 1U);
    EXPECT_TRUE(Same(target.calls[0].points, expected, 1e-4F));
}

TEST(Primitive, WhatLiesBehindTheViewerIsLeftOut)
{
    // depth is 10 - x: vertices from x = 10 on are behind, or at the eye
    const Kanvo_Matrix3 matrix(1, 0, 0, 0, 1, 0, -1, 0, 10);
    const Kanvo_Vector3 none(0, 0, 0);
    const Coords        vertices = {{1, 1}, {2, 3}, {12, 4}, {3, 5}, {4, 6}, {10, 7}};
    const auto          count    = [&](Kanvo_PrimitiveType type, Tov_UInt ofThem)
    {
        Recorder target;
        target.DrawPrimitive(Kanvo_Primitive(type, vertices.data(), ofThem, COLOR), matrix, none, 0);
        return target.calls.size();
    };
    EXPECT_EQ(count(PT_POINTS, 6), 4U);
    EXPECT_EQ(count(PT_LINES, 6), 1U);
    EXPECT_EQ(count(PT_LINESTRIP, 6), 2U);
    EXPECT_EQ(count(PT_POLYGON, 6), 0U);
    EXPECT_EQ(count(PT_POLYGON, 2), 1U);
    Recorder target;
    target.DrawPrimitive(Kanvo_Primitive(PT_POINTS, vertices.data(), 1, COLOR), matrix,
                         Kanvo_Vector3(0, 0, std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_TRUE(target.calls.empty());
}

TEST(Primitive, ItsVerticesAreNeverWrittenTo)
{
    support::Fence fence(FIVE.size() * sizeof(Kanvo_Coord2D));
    std::memcpy(fence.Data(), FIVE.data(), fence.Size());
    fence.MakeReadOnly();
    const auto* const vertices = reinterpret_cast<const Kanvo_Coord2D*>(fence.Data());
    for (const Kanvo_PrimitiveType type : {PT_POINTS, PT_LINES, PT_LINESTRIP, PT_POLYGON})
    {
        for (const Tov_Flag flags :
             {Tov_Flag{0}, Tov_Flag{POLY_EXTRUDE}, POLY_EXTRUDE | POLY_ANTIALIAS, POLY_EXTRUDE | POLY_NOCLIP})
        {
            const Kanvo_Primitive primitive(type, vertices, 5, COLOR, 3.0F);
            Recorder              target;
            target.DrawPrimitive(primitive, flags);
            target.DrawPrimitive(primitive, Kanvo_Matrix2::IDENTITY, Kanvo_Vector2(0, 0), flags);
            target.DrawPrimitive(primitive, Kanvo_Matrix3::IDENTITY, Kanvo_Vector3(0, 0, 0), flags);
            EXPECT_GT(target.Painted(), 5);
        }
    }
}

TEST(Primitive, AllThreeFormsDrawTheSameWhereNothingMoves)
{
    for (const Kanvo_PrimitiveType type : {PT_POINTS, PT_LINES, PT_LINESTRIP, PT_POLYGON})
    {
        for (const Tov_Flag flags : {Tov_Flag{0}, Tov_Flag{POLY_ANTIALIAS}, POLY_EXTRUDE | POLY_ANTIALIAS})
        {
            const Kanvo_Primitive primitive(type, FIVE.data(), 5, COLOR, 4.0F);
            support::PolyStage    plain(64, 48);
            support::PolyStage    flat(64, 48);
            support::PolyStage    deep(64, 48);
            plain.Bitmap().DrawPrimitive(primitive, flags);
            flat.Bitmap().DrawPrimitive(primitive, Kanvo_Matrix2::IDENTITY, Kanvo_Vector2(0, 0), flags);
            deep.Bitmap().DrawPrimitive(primitive, Kanvo_Matrix3::IDENTITY, Kanvo_Vector3(0, 0, 0), flags);
            EXPECT_GT(plain.Count(), 20);
            EXPECT_EQ(flat.Pixels(), plain.Pixels()) << int{type} << std::hex << flags;
            EXPECT_EQ(deep.Pixels(), plain.Pixels()) << int{type} << std::hex << flags;
        }
    }
}

TEST(Primitive, ExtrudedItIsLargerThoughItsVerticesStay)
{
    const Coords          square = {{10, 10}, {20, 10}, {20, 20}, {10, 20}};
    const Kanvo_Primitive primitive(PT_POLYGON, square.data(), 4, COLOR);
    support::PolyStage    stage(64, 48);
    stage.Bitmap().DrawPrimitive(primitive, POLY_EXTRUDE | POLY_ANTIALIAS);
    EXPECT_EQ(stage.Count(), 12 * 12);
    stage.Fill(0xFF000000U);
    stage.Bitmap().DrawPrimitive(primitive, POLY_EXTRUDE | POLY_ANTIALIAS);
    EXPECT_EQ(stage.Count(), 12 * 12) << "no larger the second time";
}

TEST(Primitive, NothingIsDrawnOfNothingOrOfAnUnknownType)
{
    support::AssertCapture asserts;
    Recorder               target;
    for (const Kanvo_PrimitiveType type : {PT_POINTS, PT_LINES, PT_LINESTRIP, PT_POLYGON})
    {
        for (const Kanvo_Primitive& primitive :
             {Kanvo_Primitive(type, nullptr, 0, COLOR), Kanvo_Primitive(type, nullptr, 9, COLOR),
              Kanvo_Primitive(type, FIVE.data(), 0, COLOR)})
        {
            target.DrawPrimitive(primitive, 0);
            target.DrawPrimitive(primitive, Kanvo_Matrix2::IDENTITY, Kanvo_Vector2(0, 0), 0);
            target.DrawPrimitive(primitive, Kanvo_Matrix3::IDENTITY, Kanvo_Vector3(0, 0, 0), 0);
        }
    }
    target.DrawPrimitive(Kanvo_Primitive(static_cast<Kanvo_PrimitiveType>(77), FIVE.data(), 5, COLOR), 0);
    EXPECT_EQ(target.Painted(), 0);
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(Primitive, OneThatIsTooLargeToMoveAssertsAndIsNotDrawn)
{
    const Coords           many(5000, Kanvo_Coord2D{9, 9});
    support::AssertCapture asserts;
    Recorder               target;
    const Kanvo_Primitive  primitive(PT_POLYGON, many.data(), 5000, COLOR);
    target.DrawPrimitive(primitive, Kanvo_Matrix2::IDENTITY, Kanvo_Vector2(0, 0), 0);
    EXPECT_EQ(asserts.Take(), support::Messages{"polygon too large"});
    EXPECT_TRUE(target.calls.empty());
    // lines and points need no room
    target.DrawPrimitive(Kanvo_Primitive(PT_POINTS, many.data(), 5000, COLOR), Kanvo_Matrix2::IDENTITY,
                         Kanvo_Vector2(0, 0), 0);
    EXPECT_EQ(target.calls.size(), 5000U);
    EXPECT_EQ(asserts.Count(), 0U);
}
