// Tests of what lies between the entry of lines and the span renderers: which octant is chosen and with which numbers
// (the octants are replaced by spies here), then the octant functions themselves, called directly.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wsubobject-linkage"  // it is a source file, and its lambdas hold types of its own
#endif
#include "Kanvo_Linedraw.cpp"  // NOLINT(bugprone-suspicious-include): instantiated again, with spies for octants
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "LineStage.h"

namespace
{

//! What an octant was asked for.
struct OctantCall
{
    std::string          function;
    bool                 majorIsX = false;
    int                  quality  = 0;
    bool                 pattern  = false;
    float                startMaj = 0.0F;
    float                startMin = 0.0F;
    float                deltaMaj = 0.0F;
    float                deltaMin = 0.0F;
    Tov_Flag             flags    = 0;
    float                maxMaj   = 0.0F;
    float                maxMin   = 0.0F;
    float                minMaj   = 0.0F;
    float                minMin   = 0.0F;
    Tov_Flag             code     = 0;
    float                width    = 0.0F;
    float                deltaW   = 0.0F;
    Kanvo_Line_clipRange majClip{};
    Kanvo_Line_clipRange minClip{};
    Tov_Fixed            texMul    = 0;
    Tov_Fixed            texOffset = 0;
    bool                 flip      = false;
    const Kanvo_Color*   colors    = nullptr;
};

std::vector<OctantCall> g_calls;

//! A policy of its own name, so that its octants can be replaced.
struct SpyAccess : Kanvo_PixelARGB32_Access
{
};

void NoteStyle(OctantCall& /*call*/, Kanvo_PixelARGB32 /*color*/) {}
void NoteStyle(OctantCall& call, const Kanvo_Line_patternStyle* style)
{
    call.pattern   = true;
    call.texMul    = style->fxTexMul;
    call.texOffset = style->fxTexOffset;
    call.flip      = style->bFlip;
    call.colors    = style->aclColorBase;
}

template <class Style, bool MAJOR_IS_X, int QUALITY>
class OctantSpy
{
public:
    static void ThinLineOctant(Kanvo_Bitmap*, float startMaj, float startMin, float deltaMaj, float deltaMin,
                               const Style& style, Tov_Flag flags, float maxMaj, float maxMin, float minMaj,
                               float minMin, Tov_Flag code)
    {
        OctantCall call = Note("thin", startMaj, startMin, deltaMaj, deltaMin, style, flags);
        call.maxMaj     = maxMaj;
        call.maxMin     = maxMin;
        call.minMaj     = minMaj;
        call.minMin     = minMin;
        call.code       = code;
        g_calls.push_back(call);
    }
    static void WideLineOctant(Kanvo_Bitmap*, float startMaj, float startMin, float deltaMaj, float deltaMin,
                               const Style& style, float width, float deltaWidth, Tov_Flag flags)
    {
        OctantCall call = Note("wide", startMaj, startMin, deltaMaj, deltaMin, style, flags);
        call.width      = width;
        call.deltaW     = deltaWidth;
        g_calls.push_back(call);
    }
    static void WideLineOctantClip(Kanvo_Bitmap*, float startMaj, float startMin, float deltaMaj, float deltaMin,
                                   const Style& style, float width, float deltaWidth, Tov_Flag flags,
                                   const Kanvo_Line_clipRange& majClip, const Kanvo_Line_clipRange& minClip)
    {
        OctantCall call = Note("wide clipped", startMaj, startMin, deltaMaj, deltaMin, style, flags);
        call.width      = width;
        call.deltaW     = deltaWidth;
        call.majClip    = majClip;
        call.minClip    = minClip;
        g_calls.push_back(call);
    }

private:
    static OctantCall Note(const char* function, float startMaj, float startMin, float deltaMaj, float deltaMin,
                           const Style& style, Tov_Flag flags)
    {
        OctantCall call;
        call.function = function;
        call.majorIsX = MAJOR_IS_X;
        call.quality  = QUALITY;
        call.startMaj = startMaj;
        call.startMin = startMin;
        call.deltaMaj = deltaMaj;
        call.deltaMin = deltaMin;
        call.flags    = flags;
        NoteStyle(call, style);
        return call;
    }
};

using P = Kanvo_PixelARGB32;
using O = Kanvo_OffsetARGB32;
using A = Kanvo_PixelARGB32_Access;

}  // namespace

// A class for each of the six renderers over the spying policy, whatever the style.
template <class S>
class Kanvo_Linedraw_Octant<S, Kanvo_HSpanRender<P, O, S, SpyAccess>> : public OctantSpy<S, false, 0>
{
};
template <class S>
class Kanvo_Linedraw_Octant<S, Kanvo_HSpanRender_AA<P, O, S, SpyAccess>> : public OctantSpy<S, false, 1>
{
};
template <class S>
class Kanvo_Linedraw_Octant<S, Kanvo_HSpanRender_HQAA<P, O, S, SpyAccess>> : public OctantSpy<S, false, 2>
{
};
template <class S>
class Kanvo_Linedraw_Octant<S, Kanvo_VSpanRender<P, O, S, SpyAccess>> : public OctantSpy<S, true, 0>
{
};
template <class S>
class Kanvo_Linedraw_Octant<S, Kanvo_VSpanRender_AA<P, O, S, SpyAccess>> : public OctantSpy<S, true, 1>
{
};
template <class S>
class Kanvo_Linedraw_Octant<S, Kanvo_VSpanRender_HQAA<P, O, S, SpyAccess>> : public OctantSpy<S, true, 2>
{
};

namespace
{

constexpr Tov_Flag AA = Kanvo_LF_ANTIALIAS, HQ = Kanvo_LF_HQ_AA, OPEN = Kanvo_LF_DO_NOT_CLIP, PAT = Kanvo_LF_PATTERN;

//! A 96 x 80 target whose lines end at the spies.
class Dispatch : public testing::Test
{
protected:
    Dispatch() { stage.State().Set(LINEPATTERN, static_cast<void*>(&pattern)); }

    //! Draws and returns what one octant was asked for.
    OctantCall Line(float x0, float y0, float x1, float y1, Tov_Flag flags = 0, float startWidth = 1.0F,
                    float endWidth = -1.0F)
    {
        g_calls.clear();
        Kanvo_Linedraw<P, O, SpyAccess, true>::DrawLine(&stage.Bitmap(), Kanvo_Vector2(x0, y0), Kanvo_Vector2(x1, y1),
                                                        0xFFFFFFFFU, flags, startWidth,
                                                        endWidth < 0.0F ? startWidth : endWidth);
        if (g_calls.size() != 1)
        {
            ADD_FAILURE() << g_calls.size() << " octants were called";
            return {};
        }
        return g_calls[0];
    }

    support::LineStage stage{96, 80};
    Kanvo_Pattern      pattern;
};

//! One octant with the true policy, on a 64 x 48 target, and rows or columns read along its axes.
template <template <class, class, class, class> class Render>
using Octant = Kanvo_Linedraw_Octant<P, Render<P, O, P, A>>;

constexpr P WHITE = 0xFFFFFFFFU;

//! Marked pixels of a column.
std::string Column(support::LineStage& stage, int x)
{
    std::string text;
    for (unsigned y = 0; y < stage.Height(); ++y) text += stage.At(x, static_cast<int>(y)) == 0xFF000000U ? '.' : '#';
    return text;
}

//! Rows from first to last that hold a marked pixel, as "first-last", or "none".
std::string Rows(support::LineStage& stage)
{
    int first = -1;
    int last  = -1;
    for (int y = 0; y < static_cast<int>(stage.Height()); ++y)
    {
        for (int x = 0; x < static_cast<int>(stage.Width()); ++x)
        {
            if (stage.At(x, y) == 0xFF000000U) continue;
            if (first < 0) first = y;
            last = y;
        }
    }
    return first < 0 ? "none" : std::to_string(first) + "-" + std::to_string(last);
}

}  // namespace

// ---- which octant ---------------------------------------------------------------------------------------------------

TEST_F(Dispatch, EveryCellIsReached)
{
    constexpr Tov_Flag QUALITIES[] = {0, AA, HQ, AA | HQ};
    for (const bool wide : {false, true})
    {
        for (const bool majorIsX : {false, true})
        {
            for (int index = 0; index < 4; ++index)
            {
                for (const Tov_Flag style : {Tov_Flag{0}, PAT})
                {
                    for (const Tov_Flag clip : {Tov_Flag{0}, OPEN})
                    {
                        SCOPED_TRACE(testing::Message() << wide << majorIsX << index << ' ' << style << ' ' << clip);
                        const OctantCall call = Line(20, 20, majorIsX ? 60.0F : 30.0F, majorIsX ? 30.0F : 60.0F,
                                                     QUALITIES[index] | style | clip, wide ? 6.0F : 1.0F);
                        // a pattern line is wide at every width
                        EXPECT_EQ(call.function, !wide && style == 0 ? "thin" : clip != 0 ? "wide" : "wide clipped");
                        EXPECT_EQ(call.majorIsX, majorIsX);
                        EXPECT_EQ(call.quality, std::min(index, 2));
                        EXPECT_EQ(call.pattern, style != 0);
                    }
                }
            }
        }
    }
}

TEST_F(Dispatch, FortyFiveDegreesRunAlongY)
{
    EXPECT_FALSE(Line(10, 10, 30, 30).majorIsX);
    EXPECT_FALSE(Line(10, 30, 30, 10).majorIsX);
    EXPECT_FALSE(Line(30, 30, 10, 10, AA, 8).majorIsX);
    EXPECT_TRUE(Line(10, 10, 31, 30).majorIsX);
    EXPECT_TRUE(Line(31, 30, 10, 10).majorIsX);
    EXPECT_TRUE(Line(10, 10, 31, 30, AA, 8).majorIsX);
    EXPECT_FALSE(Line(10, 10, 30, 31).majorIsX);
}

TEST_F(Dispatch, LinesAreTurnedToRunForwards)
{
    OctantCall call = Line(10, 5, 2, 5);
    EXPECT_EQ(call.startMaj, 2.0F);
    EXPECT_EQ(call.startMin, 5.0F);
    EXPECT_EQ(call.deltaMaj, 8.0F);
    EXPECT_EQ(call.deltaMin, 0.0F);
    call = Line(30, 40, 25, 10, AA | OPEN, 4, 9);
    EXPECT_FALSE(call.majorIsX);
    EXPECT_EQ(call.startMaj, 10.0F);
    EXPECT_EQ(call.startMin, 25.0F);
    EXPECT_EQ(call.deltaMaj, 30.0F);
    EXPECT_EQ(call.deltaMin, 5.0F);
    EXPECT_EQ(call.width, 9.0F);  // that of the end, where it starts now
    EXPECT_EQ(call.deltaW, -5.0F);
    call = Line(30, 40, 25, 70, AA | OPEN, 4, 9);
    EXPECT_EQ(call.startMaj, 40.0F);
    EXPECT_EQ(call.width, 4.0F);
    EXPECT_EQ(call.deltaW, 5.0F);
}

TEST_F(Dispatch, AWideTurnedPatternLineIsFlipped)
{
    EXPECT_TRUE(Line(40, 20, 20, 20, PAT, 1).flip);
    EXPECT_TRUE(Line(40, 40, 40, 20, PAT | OPEN | AA, 5).flip);
    EXPECT_FALSE(Line(20, 20, 40, 20, PAT, 1).flip);
    EXPECT_FALSE(Line(40, 20, 40, 40, PAT | OPEN | HQ, 5).flip);
}

// ---- widths and flags -----------------------------------------------------------------------------------------------

TEST_F(Dispatch, PlainWidthsAreSnappedToHalvesEachByItself)
{
    struct Snap
    {
        float    start;
        float    end;
        float    width;  // 0: thin
        float    delta;
        Tov_Flag flags;
    };
    // clang-format off
    constexpr Snap SNAPS[] = {
        {1.0F, 1.0F, 0.0F, 0.0F, 0},      {1.5F, 1.5F, 0.0F, 0.0F, 0},      // 0.5, raised to 1
        {1.6F, 1.6F, 1.5F, 0.0F, 0},      {2.0F, 2.0F, 1.5F, 0.0F, 0},
        {2.5F, 2.5F, 1.5F, 0.0F, 0},      {2.6F, 2.6F, 2.5F, 0.0F, 0},
        {3.0F, 3.0F, 2.5F, 0.0F, 0},      {10.0F, 10.0F, 9.5F, 0.0F, 0},
        {5.0F, 2.2F, 4.5F, -3.0F, 0},     {2.2F, 5.0F, 1.5F, 3.0F, 0},
        {1.6F, 1.6F, 1.6F, 0.0F, AA},     {2.6F, 5.2F, 2.6F, 2.6F, AA},
        {1.6F, 1.6F, 1.6F, 0.0F, HQ},     {1.6F, 1.6F, 1.6F, 0.0F, AA | HQ},
        {0.3F, 0.3F, 0.0F, 0.0F, AA},     {1.0F, 1.0F, 0.0F, 0.0F, HQ},     {1.0F, 0.5F, 0.0F, 0.0F, AA},
    };
    // clang-format on
    for (const Snap& snap : SNAPS)
    {
        SCOPED_TRACE(testing::Message() << snap.start << " to " << snap.end << ", flags " << snap.flags);
        OctantCall call = Line(20, 20, 20, 60, OPEN | snap.flags, snap.start, snap.end);
        EXPECT_EQ(call.function, snap.width == 0.0F ? "thin" : "wide");
        EXPECT_EQ(call.width, snap.width);
        EXPECT_FLOAT_EQ(call.deltaW, snap.delta);
        call = Line(20, 20, 20, 60, snap.flags, snap.start, snap.end);
        EXPECT_FLOAT_EQ(call.width, snap.width != 0.0F ? snap.width - 0.5F : 0.0F) << "clipped: half a pixel less";
        EXPECT_FLOAT_EQ(call.deltaW, snap.delta);
    }
}

TEST_F(Dispatch, LinesBelowThreePixelsLoseTheirCapsAndGainAStyleBit)
{
    constexpr Tov_Flag CAPS = Kanvo_LF_ROUND_START | Kanvo_LF_ROUND_END;
    support::LineSpies spies;
    const auto         dots = [&] { return spies.numberOfDots.count + spies.rejectedDots.count; };
    Tov_Flag           got  = Line(20, 20, 20, 60, OPEN | CAPS, 3.0F).flags;  // snapped to 2.5
    EXPECT_EQ(got, OPEN | Kanvo_LF_WIDE_S);
    EXPECT_EQ(dots(), 0);
    got = Line(20, 20, 20, 60, OPEN | CAPS | AA, 2.99F).flags;
    EXPECT_EQ(got, OPEN | AA | Kanvo_LF_WIDE_S);
    EXPECT_EQ(dots(), 0);
    got = Line(20, 20, 20, 60, OPEN | CAPS | AA, 3.0F).flags;
    EXPECT_EQ(got, OPEN | AA | CAPS);
    EXPECT_EQ(dots(), 2);
    got = Line(20, 20, 20, 60, OPEN | CAPS | AA, 1.0F, 3.0F).flags;  // the larger width decides
    EXPECT_EQ(got, OPEN | AA | CAPS);
    EXPECT_EQ(dots(), 4);
}

TEST_F(Dispatch, ClippedWideLinesGainThreeBits)
{
    constexpr Tov_Flag ADDED = Kanvo_LF_WIDE_S | Kanvo_LF_WIDE_2 | Kanvo_LF_AA_CLIP_END_PART_CORRECTION;
    EXPECT_EQ(Line(20, 20, 20, 60, 0, 10).flags, ADDED);
    EXPECT_EQ(Line(20, 20, 20, 60, HQ | Kanvo_LF_WIDE_T, 10).flags, HQ | Kanvo_LF_WIDE_T | ADDED);
    EXPECT_EQ(Line(20, 20, 20, 60, OPEN, 10).flags, OPEN);
}

TEST_F(Dispatch, NegativeWidthsCountAsNothingAndHugeOnesAreLimited)
{
    EXPECT_EQ(Line(20, 20, 20, 60, AA, -7.0F, -0.0F).function, "thin");
    g_calls.clear();
    Kanvo_Linedraw<P, O, SpyAccess, true>::DrawLine(&stage.Bitmap(), Kanvo_Vector2(20, 20), Kanvo_Vector2(30, 20),
                                                    WHITE, AA | OPEN, 8.5F, -87.5F);
    ASSERT_EQ(g_calls.size(), 1U);
    EXPECT_EQ(g_calls[0].width, 8.5F);
    EXPECT_EQ(g_calls[0].deltaW, -8.5F);
    EXPECT_EQ(Line(20, 20, 20, 60, AA | OPEN, 1.0e9F).width, 16384.0F);
}

TEST_F(Dispatch, WidthsAreInterpolatedAtTheClippedEnds)
{
    // border 22: the line enters at x = -22, 78 of its 200 pixels after its start, and ends inside
    OctantCall call = Line(-100, 40, 100, 40, AA, 10, 30);
    EXPECT_FLOAT_EQ(call.startMaj, -22.0F);
    EXPECT_FLOAT_EQ(call.deltaMaj, 122.0F);
    EXPECT_FLOAT_EQ(call.width, 10.0F + 0.39F * 20.0F - 0.5F);
    EXPECT_FLOAT_EQ(call.deltaW, 30.0F - 17.8F);
    // leaving at x = 96 + 22 - 2: 156 of 200 pixels after the start
    call = Line(-40, 40, 160, 40, AA, 30, 10);
    EXPECT_FLOAT_EQ(call.startMaj, -22.0F);
    EXPECT_FLOAT_EQ(call.startMaj + call.deltaMaj, 116.0F);
    EXPECT_NEAR(call.width, 30.0F - 20.0F * 18.0F / 200.0F - 0.5F, 1e-5F);
    EXPECT_NEAR(call.deltaW, -20.0F * 138.0F / 200.0F, 1e-5F);
}

// ---- bounds ---------------------------------------------------------------------------------------------------------

TEST_F(Dispatch, ThinLinesGetTheClipRectangle)
{
    stage.Bitmap().SetCliprect(5, 7, 60, 50);
    OctantCall call = Line(20, 20, 43, 28);  // 23 and 8 have no bit in common, but x moves: the guard goes to y
    EXPECT_EQ(call.maxMaj, 60.0F);
    EXPECT_EQ(call.maxMin, 50.5F);
    EXPECT_EQ(call.minMaj, 5.0F);
    EXPECT_EQ(call.minMin, 7.0F);
    call = Line(20, 20, 25, 41);  // 5 and 21: bits in common
    EXPECT_EQ(call.maxMaj, 50.0F);
    EXPECT_EQ(call.maxMin, 60.0F);
    EXPECT_EQ(call.minMaj, 7.0F);
    EXPECT_EQ(call.minMin, 5.0F);
}

TEST_F(Dispatch, UnclippedThinLinesGetFixedBounds)
{
    const OctantCall call = Line(20, 20, 25, 41, OPEN);
    EXPECT_EQ(call.maxMaj, 2048.0F);
    EXPECT_EQ(call.maxMin, 2048.0F);
    EXPECT_EQ(call.minMaj, 0.0F);
    EXPECT_EQ(call.minMin, 0.0F);
    EXPECT_EQ(call.code, 0U);
}

TEST_F(Dispatch, TheAxisGuardIsABitTest)
{
    struct Guard
    {
        float dx;
        float dy;
        float grownX;
        float grownY;
    };
    // clang-format off
    constexpr Guard GUARDS[] = {
        {0.0F, 20.0F, 0.5F, 0.0F},   // dx is 0
        {20.0F, 0.0F, 0.0F, 0.5F},   // parallel to x
        {0.4F, 20.0F, 0.0F, 0.5F},   // truncated to 0, but not 0
        {16.0F, 8.0F, 0.0F, 0.5F},   // 10000b and 01000b: no axis anywhere near
        {12.0F, 8.0F, 0.0F, 0.0F},   // 1100b and 1000b
        {3.0F, 21.0F, 0.0F, 0.0F},   // 00011b and 10101b
        {-12.0F, -8.0F, 0.0F, 0.5F}, // negative becomes 0
        {12.0F, -8.0F, 0.0F, 0.5F},  {-12.0F, 8.0F, 0.0F, 0.5F},
        {0.0F, -20.0F, 0.5F, 0.0F},  {0.0F, 0.0F, 0.5F, 0.0F},
        {15.9F, 16.0F, 0.0F, 0.5F},  // truncated: 01111b and 10000b
    };
    // clang-format on
    for (const Guard& guard : GUARDS)
    {
        SCOPED_TRACE(testing::Message() << guard.dx << ' ' << guard.dy);
        const OctantCall call = Line(40, 40, 40.0F + guard.dx, 40.0F + guard.dy, OPEN);
        EXPECT_EQ(call.majorIsX ? call.maxMaj : call.maxMin, 2048.0F + guard.grownX);
        EXPECT_EQ(call.majorIsX ? call.maxMin : call.maxMaj, 2048.0F + guard.grownY);
    }
}

TEST_F(Dispatch, WideLinesGetTheClipRectangleAndBlendedOnesAPixelMore)
{
    constexpr Tov_Fixed ONE = 0x10000;
    stage.Bitmap().SetCliprect(5, 7, 60, 50);
    const auto expect = [&](const OctantCall& call, int minMaj, int maxMaj, int minMin, int maxMin)
    {
        EXPECT_EQ(call.majClip.fxMin, minMaj * ONE);
        EXPECT_EQ(call.majClip.fxMax, maxMaj * ONE);
        EXPECT_EQ(call.minClip.fxMin, minMin * ONE);
        EXPECT_EQ(call.minClip.fxMax, maxMin * ONE);
    };
    expect(Line(20, 20, 50, 30, 0, 6), 5, 60, 7, 50);
    expect(Line(20, 20, 50, 30, AA, 6), 5, 60, 7, 51);
    expect(Line(20, 20, 50, 30, HQ, 6), 5, 60, 7, 51);
    expect(Line(20, 20, 30, 45, 0, 6), 7, 50, 5, 60);
    expect(Line(20, 20, 30, 45, AA, 6), 7, 50, 5, 61);
    expect(Line(20, 20, 30, 45, HQ | PAT, 1), 7, 50, 5, 61);
}

TEST_F(Dispatch, TheCodeSaysWhetherALineIsClippedOrNearTheBorder)
{
    struct Near
    {
        Tov_Flag flags;
        float    margin;
        float    widened;
    };
    for (const Near& near : {Near{0, 1, 1}, Near{AA, 3, 2}, Near{HQ, 5, 4}, Near{AA | HQ, 5, 4}})
    {
        SCOPED_TRACE(near.flags);
        const auto code = [&](float x) { return Line(x, 20, x, 60, near.flags).code & (CF_CLIPPED | CF_OVERFLOW); };
        EXPECT_EQ(code(near.margin), 0U);
        EXPECT_EQ(code(near.margin - 0.01F), CF_OVERFLOW);
        EXPECT_EQ(code(95.0F - near.margin), 0U);
        EXPECT_EQ(code(95.01F - near.margin), CF_OVERFLOW);
        EXPECT_EQ(code(-near.widened), CF_OVERFLOW);
        const OctantCall cut = Line(50, 20, 50, 500, near.flags);
        EXPECT_EQ(cut.code & (CF_CLIPPED | CF_OVERFLOW), CF_CLIPPED | CF_OVERFLOW);
        EXPECT_EQ(cut.startMaj + cut.deltaMaj, 79.0F + near.widened);
    }
}

TEST_F(Dispatch, AThinLineOfTwoWidthsIsToldToBeNearTheBorderByTheWidestMargin)
{
    // the margin of the line before must not matter
    Line(50, 20, 50, 60);
    EXPECT_EQ(Line(4.9F, 20, 4.9F, 60, AA, 1.0F, 0.5F).code & CF_OVERFLOW, CF_OVERFLOW);
    EXPECT_EQ(Line(95, 10, 95, 79, AA, 1.0F, 0.5F).code & CF_OVERFLOW, CF_OVERFLOW);
    EXPECT_EQ(Line(50, 20, 50, 60, AA, 1.0F, 0.5F).code & CF_OVERFLOW, 0U);
}

// ---- patterns -------------------------------------------------------------------------------------------------------

TEST_F(Dispatch, ThePatternIsTakenFromTheRenderState)
{
    stage.State().Set(I_LINPATFACTOR, 0.5F);
    stage.State().Set(LINEPATTERNOFFSET, 0.25F);
    const OctantCall call = Line(20, 20, 30, 20, PAT);
    EXPECT_EQ(call.texMul, 0x8000);
    EXPECT_EQ(call.texOffset, 0x4000);
    EXPECT_EQ(call.colors, pattern.GetColors());
    EXPECT_EQ(stage.State().GetValue(LINEPATTERNOFFSET), 0.25F);
}

TEST_F(Dispatch, AdvanceMovesTheOffsetOfTheNextLineOnly)
{
    stage.State().Set(LINEPATTERNOFFSET, 2.75F);
    OctantCall call = Line(20, 20, 30, 20, PAT | Kanvo_LF_ADVANCEPATTERN);
    EXPECT_EQ(stage.State().GetValue(LINEPATTERNOFFSET), 12.75F);
    EXPECT_EQ(call.texOffset, 0xC000);
    EXPECT_EQ(call.texMul, 0x10000);
    call = Line(20, 20, 20, 20.5F, PAT | Kanvo_LF_ADVANCEPATTERN);
    EXPECT_EQ(stage.State().GetValue(LINEPATTERNOFFSET), 13.25F);
    EXPECT_EQ(call.texOffset, 0xC000);
    // a point has no length; a line outside has one; without a pattern nothing moves
    Line(20, 20, 20, 20, PAT | Kanvo_LF_ADVANCEPATTERN);
    EXPECT_EQ(stage.State().GetValue(LINEPATTERNOFFSET), 13.25F);
    Line(20, 20, 30, 20, Kanvo_LF_ADVANCEPATTERN);
    EXPECT_EQ(stage.State().GetValue(LINEPATTERNOFFSET), 13.25F);
    Kanvo_Linedraw<P, O, SpyAccess, true>::DrawLine(&stage.Bitmap(), Kanvo_Vector2(500, 500), Kanvo_Vector2(510, 500),
                                                    WHITE, PAT | Kanvo_LF_ADVANCEPATTERN, 1.0F, 1.0F);
    EXPECT_EQ(stage.State().GetValue(LINEPATTERNOFFSET), 23.25F);
}

TEST_F(Dispatch, RescaleFitsTheReferenceLengthToTheLine)
{
    stage.State().Set(I_LINPATFACTOR, 0.25F);
    stage.State().Set(I_LINPATREFLEN, 20.0F);
    EXPECT_EQ(Line(20, 20, 30, 20, PAT | Kanvo_LF_RESCALEPATTERN).texMul, 0x8000);
    EXPECT_EQ(Line(20, 20, 60, 20, PAT | Kanvo_LF_RESCALEPATTERN).texMul, 0x2000);
    EXPECT_EQ(Line(20, 20, 40, 20, PAT | Kanvo_LF_RESCALEPATTERN).texMul, 0x4000);
    EXPECT_EQ(Line(20, 20, 20, 20, PAT | Kanvo_LF_RESCALEPATTERN).texMul, 0x4000);
    EXPECT_EQ(stage.State().GetValue(LINEPATTERNOFFSET), 0.0F);
    EXPECT_EQ(Line(20, 20, 30, 20, PAT | Kanvo_LF_RESCALEPATTERN | Kanvo_LF_ADVANCEPATTERN).texMul, 0x8000);
    EXPECT_EQ(stage.State().GetValue(LINEPATTERNOFFSET), 5.0F);  // factor times reference, whatever the line
}

TEST_F(Dispatch, OnlyTheFractionOfTheOffsetSurvives)
{
    const auto offset = [&](float value)
    {
        stage.State().Set(LINEPATTERNOFFSET, value);
        return Line(20, 20, 30, 20, PAT).texOffset;
    };
    EXPECT_EQ(offset(0.75F), 0xC000);
    EXPECT_EQ(offset(1000.5F), 0x8000);
    EXPECT_EQ(offset(-0.25F), 0xC000);
    EXPECT_EQ(offset(-0.3F), 0x10000 - 19660);
    for (const float value : {1.0e9F, -1.0e9F, 1.0e30F})
    {
        EXPECT_GE(offset(value), 0);
        EXPECT_LT(offset(value), 0x10000);
    }
}

// ---- the thin loop --------------------------------------------------------------------------------------------------

namespace
{

//! Rows of a vertical thin line from y0 over dy, drawn by the octant.
template <template <class, class, class, class> class Render>
std::string ThinRows(float y0, float dy, Tov_Flag flags, Tov_Flag code, float x = 20.0F, float max = 47.0F)
{
    support::LineStage stage(64, 48);
    Octant<Render>::ThinLineOctant(&stage.Bitmap(), y0, x, dy, 0.0F, WHITE, flags, max, 63.0F, 0.0F, 0.0F, code);
    return Rows(stage);
}

}  // namespace

TEST(Thinline, TheStartIsRoundedAndAHalfGoesDown)
{
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender>(3.5F, 4.0F, 0, 0), "3-7");
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender>(3.5001F, 4.0F, 0, 0), "4-7");
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender>(3.0F, 0.0F, 0, 0), "3-3");
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender_AA>(3.5F, 4.0F, AA, 0), "3-7");
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender_HQAA>(3.5001F, 4.0F, HQ, 0), "4-7");
}

TEST(Thinline, AClippedThinLineGoesOnForHalfAPixel)
{
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender>(0.0F, 10.5F, 0, 0), "0-10");
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender>(0.0F, 10.5F, 0, CF_VIS), "0-10");
    for (const Tov_Flag code : {CF_CLIPPED, CB_OUTOFBOUND, CF_OVERFLOW})
    {
        EXPECT_EQ(ThinRows<Kanvo_HSpanRender>(0.0F, 10.5F, 0, code), "0-11") << code;
        EXPECT_EQ(ThinRows<Kanvo_HSpanRender_AA>(0.0F, 10.5F, AA, code), "0-11") << code;
        EXPECT_EQ(ThinRows<Kanvo_HSpanRender_HQAA>(0.0F, 10.5F, HQ, code), "0-11") << code;
        EXPECT_EQ(ThinRows<Kanvo_HSpanRender>(0.0F, 10.4999F, 0, code), "0-10") << code;
        EXPECT_EQ(ThinRows<Kanvo_HSpanRender>(0.0F, 10.5F, 0, code, 20.0F, 10.0F), "0-10") << code;
    }
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender>(0.0F, 10.5F, 0, 0, 20.0F, 5.0F), "0-5");
}

TEST(Thinline, AFilteredFootprintBeforeTheBorderTakesTheClippedPath)
{
    // 1.0 - 1.45 is below 0, 1.5 - 1.45 is not; the extra half pixel tells the path
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender_HQAA>(0.0F, 10.5F, HQ | AA, 0, 1.0F), "0-11");
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender_HQAA>(0.0F, 10.5F, HQ | AA, 0, 1.5F), "0-10");
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender_HQAA>(0.0F, 10.5F, HQ, 0, 0.9F), "0-11");
    EXPECT_EQ(ThinRows<Kanvo_HSpanRender_HQAA>(0.0F, 10.5F, HQ, 0, 1.0F), "0-10");  // half a pixel further right
}

TEST(Thinline, WithoutSlopeTheMinorPositionStays)
{
    support::LineStage stage(64, 48);
    Octant<Kanvo_VSpanRender>::ThinLineOctant(&stage.Bitmap(), 5.0F, 10.4F, 20.0F, 0.0F, WHITE, 0, 63, 47, 0, 0, 0);
    for (int x = 5; x <= 25; ++x) EXPECT_EQ(stage.At(x, 10), WHITE) << x;
    EXPECT_EQ(stage.Count(), 21);
}

TEST(Thinline, BelowAThousandthOfAPixelThereIsNoSlope)
{
    support::LineStage stage(64, 48);
    Octant<Kanvo_HSpanRender>::ThinLineOctant(&stage.Bitmap(), 4.0F, 10.0F, 0.001F, 30.0F, WHITE, 0, 47, 63, 0, 0, 0);
    EXPECT_EQ(stage.Count(), 1);
    EXPECT_EQ(stage.At(10, 4), WHITE);
}

TEST(Thinline, PlainAndFilteredOnlyLinesAreRoundedAndSoftOnesAreNot)
{
    support::LineStage stage(64, 48);
    Octant<Kanvo_HSpanRender>::ThinLineOctant(&stage.Bitmap(), 4, 10.5F, 0, 0, WHITE, 0, 47, 63, 0, 0, 0);
    EXPECT_EQ(stage.Picture()[4].find('#'), 11U);
    stage.Fill(0xFF000000U);
    Octant<Kanvo_HSpanRender_AA>::ThinLineOctant(&stage.Bitmap(), 4, 10.5F, 0, 0, WHITE, AA, 47, 63, 0, 0, 0);
    EXPECT_EQ(stage.At(10, 4) & 255U, 255U * 63U / 128U);  // alpha 127
    EXPECT_EQ(stage.At(11, 4) & 255U, 255U * 64U / 128U);  // alpha 128
    stage.Fill(0xFF000000U);
    Octant<Kanvo_HSpanRender_HQAA>::ThinLineOctant(&stage.Bitmap(), 4, 10.0F, 0, 0, WHITE, HQ, 47, 63, 0, 0, 0);
    EXPECT_EQ(stage.Picture()[4].find('#'), 9U);  // 10 + 0.5 - 1.45
    stage.Fill(0xFF000000U);
    Octant<Kanvo_HSpanRender_HQAA>::ThinLineOctant(&stage.Bitmap(), 4, 10.0F, 0, 0, WHITE, HQ | AA, 47, 63, 0, 0, 0);
    EXPECT_EQ(stage.Picture()[4].find('#'), 8U);  // 10 - 1.45
}

TEST(Thinline, TheSlopeIsCarriedFromPixelToPixel)
{
    support::LineStage stage(64, 48);
    Octant<Kanvo_VSpanRender>::ThinLineOctant(&stage.Bitmap(), 0, 0, 8, 4, WHITE, 0, 63, 47, 0, 0, 0);
    for (int x = 0; x <= 8; ++x) EXPECT_EQ(Column(stage, x).find('#'), static_cast<unsigned>((x + 1) / 2)) << x;
}

TEST(Thinline, TheLengthIsCounted)
{
    support::LineSpies spies;
    ThinRows<Kanvo_HSpanRender>(3.0F, 10.25F, 0, 0);
    EXPECT_EQ(spies.lineLength.last, 10.25F);
    EXPECT_EQ(spies.lineLength.count, 1);
}

// ---- wide lines -----------------------------------------------------------------------------------------------------

namespace
{

//! A vertical wide line at x = 30.
template <template <class, class, class, class> class Render>
std::vector<std::uint32_t> Wide(float length, float width, float deltaWidth, Tov_Flag flags)
{
    support::LineStage stage(64, 48);
    Octant<Render>::WideLineOctant(&stage.Bitmap(), 10.0F, 30.0F, length, 0.0F, WHITE, width, deltaWidth, flags);
    return stage.Pixels();
}

template <template <class, class, class, class> class Render>
std::vector<std::uint32_t> WideClip(float length, float width, float deltaWidth, Tov_Flag flags)
{
    support::LineStage stage(64, 48);
    Octant<Render>::WideLineOctantClip(&stage.Bitmap(), 10.0F, 30.0F, length, 0.0F, WHITE, width, deltaWidth, flags,
                                       {0, 47 << 16}, {0, 64 << 16});
    return stage.Pixels();
}

int Marked(const std::vector<std::uint32_t>& pixels)
{
    return static_cast<int>(
        std::count_if(pixels.begin(), pixels.end(), [](std::uint32_t p) { return p != 0xFF000000U; }));
}

//! Marked pixels of a row of 64.
int MarkedIn(const std::vector<std::uint32_t>& pixels, int row)
{
    const auto from = pixels.begin() + row * 64;
    return static_cast<int>(std::count_if(from, from + 64, [](std::uint32_t p) { return p != 0xFF000000U; }));
}

}  // namespace

TEST(Wideline, ALineWithoutLengthDrawsNothing)
{
    for (const float length : {0.0F, 0.00005F, 0.0001F})
    {
        EXPECT_EQ(Marked(Wide<Kanvo_HSpanRender>(length, 10.0F, 0.0F, 0)), 0) << length;
        EXPECT_EQ(Marked(Wide<Kanvo_HSpanRender_AA>(length, 10.0F, 0.0F, AA)), 0) << length;
        EXPECT_EQ(Marked(WideClip<Kanvo_HSpanRender_HQAA>(length, 10.0F, 0.0F, HQ)), 0) << length;
    }
    EXPECT_GT(Marked(Wide<Kanvo_HSpanRender>(0.9F, 10.0F, 0.0F, 0)), 0);
}

TEST(Wideline, LinesShorterThanWideAreBlendedThroughoutAndLongOnesAreStoredInTheMiddle)
{
    // a blend at 255 stops two steps short of white: that tells a body between two soft edges from a stored one
    constexpr std::size_t MIDDLE = 12 * 64 + 30;
    EXPECT_EQ(Wide<Kanvo_HSpanRender_AA>(5.0F, 10.0F, 0.0F, AA)[MIDDLE], 0xFFFDFDFDU);
    EXPECT_EQ(Wide<Kanvo_HSpanRender_AA>(9.9F, 10.0F, 0.0F, AA)[MIDDLE], 0xFFFDFDFDU);
    EXPECT_EQ(Wide<Kanvo_HSpanRender_AA>(20.0F, 10.0F, 0.0F, AA)[20 * 64 + 30], WHITE);
    EXPECT_EQ(Wide<Kanvo_HSpanRender_HQAA>(20.0F, 10.0F, 0.0F, HQ)[20 * 64 + 30], WHITE);
    EXPECT_EQ(WideClip<Kanvo_HSpanRender_AA>(5.0F, 10.0F, 0.0F, AA)[MIDDLE], 0xFFFDFDFDU);
    EXPECT_EQ(WideClip<Kanvo_HSpanRender_AA>(20.0F, 10.0F, 0.0F, AA)[20 * 64 + 30], 0xFFFDFDFDU);
}

TEST(Wideline, AStartWidthBelowOneIsRaised)
{
    EXPECT_EQ(Wide<Kanvo_HSpanRender_AA>(20.0F, 0.5F, 0.0F, AA), Wide<Kanvo_HSpanRender_AA>(20.0F, 1.0F, 0.0F, AA));
    EXPECT_EQ(Wide<Kanvo_HSpanRender>(20.0F, 0.5F, 4.0F, 0), Wide<Kanvo_HSpanRender>(20.0F, 1.0F, 4.0F, 0));
    EXPECT_EQ(WideClip<Kanvo_HSpanRender_AA>(20.0F, -3.0F, 4.0F, AA),
              WideClip<Kanvo_HSpanRender_AA>(20.0F, 1.0F, 4.0F, AA));
}

TEST(Wideline, ATaperGrowsLinearly)
{
    // from 8 to 16 over 31 pixels (the end is moved by one). Half a span h in the middle of a pixel covers between 2 h
    // and 2 h + 2 pixels. The start itself is at distance 0, which is not inside.
    const std::vector<std::uint32_t> pixels = Wide<Kanvo_HSpanRender>(30.0F, 8.0F, 8.0F, 0);
    EXPECT_EQ(MarkedIn(pixels, 10), 0);
    EXPECT_EQ(MarkedIn(pixels, 11), 9);
    for (int row = 11; row <= 40; ++row)
    {
        EXPECT_NEAR(MarkedIn(pixels, row), 9.0 + (row - 10) * 8.0 / 31.0, 1.0) << row;
        EXPECT_GE(MarkedIn(pixels, row), MarkedIn(pixels, std::max(row - 1, 11))) << row;
    }
    EXPECT_EQ(MarkedIn(pixels, 41), 0);
}

TEST(Wideline, TheWideBitsChooseHowFarTheEndsReach)
{
    const auto ends = [](Tov_Flag flags)
    {
        support::LineStage stage(64, 48);
        Octant<Kanvo_HSpanRender>::WideLineOctant(&stage.Bitmap(), 16.0F, 30.0F, 16.0F, 0.0F, WHITE, 8.0F, 0.0F, flags);
        return Rows(stage);
    };
    EXPECT_EQ(ends(Kanvo_LF_WIDE_S | Kanvo_LF_WIDE_2),
              "16-32");                         // an eighth of the width at each end: between 15 and 33
    EXPECT_EQ(ends(Kanvo_LF_WIDE_S), "15-33");  // a quarter: between 14 and 34
    EXPECT_EQ(ends(Kanvo_LF_WIDE_S | Kanvo_LF_WIDE_T), ends(Kanvo_LF_WIDE_S));
    EXPECT_EQ(ends(0), ends(Kanvo_LF_WIDE_2));
    EXPECT_EQ(ends(0), ends(Kanvo_LF_WIDE_T));
}

TEST(Wideline, TheLengthIsCountedBeforeTheEndsAreMoved)
{
    support::LineSpies spies;
    Wide<Kanvo_HSpanRender>(20.5F, 8.0F, 0.0F, Kanvo_LF_WIDE_S);
    EXPECT_EQ(spies.lineLength.last, 20.5F);
    EXPECT_EQ(spies.lineLength.count, 1);
}
