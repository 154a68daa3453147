// Tests of textures: which bitmaps can be one, what it says of itself, and the frame from pixels to texels.
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "AssertCapture.h"
#include "BlitBitmaps.h"
#include "Dice.h"
#include "Kanvo.h"
#include "Kanvo_Texture.h"
#include "RandomPolygons.h"

namespace
{

using support::Dice;

std::vector<std::uint32_t> g_memory(65536 * 2);

//! A bitmap of any type and size over memory that is large enough for those that are taken.
support::AnySource BitmapOf(unsigned type, Tov_UInt width, Tov_UInt height, Tov_UInt pitch = 0)
{
    return {nullptr, type, width, height, g_memory.data(), pitch, false};
}

}  // namespace

// ---- bitmaps --------------------------------------------------------------------------------------------------------

TEST(Texture, TakesPowersOfTwoOfWordsAndOfBytes)
{
    support::AssertCapture asserts;
    for (const unsigned type : {unsigned{BM_ARGB32}, unsigned{BM_ALPHA8}})
    {
        const Tov_UInt bytes = type == BM_ARGB32 ? 4 : 1;
        for (unsigned widthBits = 0; widthBits <= 15; ++widthBits)
        {
            const unsigned heightBits = widthBits % 2;
            for (unsigned more = 0; more < 2 && widthBits + more <= 15; ++more)
            {
                support::AnySource bitmap =
                    BitmapOf(type, 1U << widthBits, 1U << heightBits, bytes << (widthBits + more));
                Kanvo_Texture texture;
                ASSERT_TRUE(texture.SetBitmap(&bitmap)) << widthBits;
                EXPECT_EQ(texture.GetWidthMask(), (1U << widthBits) - 1);
                EXPECT_EQ(texture.GetHeightMask(), (1U << heightBits) - 1);
                EXPECT_EQ(texture.GetPitchShift(), widthBits + more);
                EXPECT_EQ(texture.GetWidth(), 1U << widthBits);
                EXPECT_EQ(texture.GetHeight(), 1U << heightBits);
                EXPECT_EQ(texture.GetType(), type);
                EXPECT_EQ(texture.GetBitmap(), &bitmap);
            }
        }
    }
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(Texture, RefusesEverythingElse)
{
    support::AnySource good    = BitmapOf(BM_ARGB32, 4, 4);
    const auto         refused = [&](Kanvo_Bitmap* bitmap)
    {
        support::AssertCapture asserts;
        Kanvo_Texture          texture(&good);
        const bool             taken = texture.SetBitmap(bitmap);
        return !taken && asserts.Take() == support::Messages{"bitmap is no texture"} &&
               texture.GetBitmap() == nullptr && texture.GetWidth() == 0 && texture.GetHeight() == 0 &&
               texture.GetType() == BM_UNKNWON;
    };
    for (unsigned type = 0; type < 12; ++type)
    {
        support::AnySource bitmap = BitmapOf(type, 4, 4);
        if (type != BM_ARGB32 && type != BM_ALPHA8)
        {
            EXPECT_TRUE(refused(&bitmap)) << type;
        }
    }
    for (const unsigned type : {unsigned{BM_ARGB32}, unsigned{BM_ALPHA8}})
    {
        for (const Tov_UInt size : {3U, 5U, 63U, 65U, 100U})
        {
            support::AnySource wide = BitmapOf(type, size, 4, type == BM_ARGB32 ? 512 : 128);
            support::AnySource high = BitmapOf(type, 4, size);
            EXPECT_TRUE(refused(&wide)) << size;
            EXPECT_TRUE(refused(&high)) << size;
        }
        support::AnySource row = BitmapOf(type, 4, 4, type == BM_ARGB32 ? 20 : 5);
        EXPECT_TRUE(refused(&row));
    }
    support::AnySource large = BitmapOf(BM_ALPHA8, 65536, 1);
    EXPECT_TRUE(refused(&large));
    support::AnySource longRows = BitmapOf(BM_ALPHA8, 4, 1, 65536);
    EXPECT_TRUE(refused(&longRows));

    support::AssertCapture asserts;
    Kanvo_Screen           screen(nullptr);
    Kanvo_BitmapARGB32     withoutMemory(&screen, 4, 4);
    asserts.Clear();
    Kanvo_Texture texture(&good);
    EXPECT_FALSE(texture.SetBitmap(&withoutMemory));
    EXPECT_EQ(asserts.Take(), support::Messages{"bitmap is no texture"});
    EXPECT_EQ(texture.GetBitmap(), nullptr);
}

TEST(Texture, NullTakesTheBitmapAwayWithoutAMessage)
{
    support::AssertCapture asserts;
    support::AnySource     bitmap = BitmapOf(BM_ARGB32, 4, 4);
    Kanvo_Texture          texture(&bitmap);
    EXPECT_EQ(texture.GetBitmap(), &bitmap);
    EXPECT_FALSE(texture.SetBitmap(nullptr));
    EXPECT_EQ(texture.GetBitmap(), nullptr);
    const Kanvo_Texture none;
    EXPECT_EQ(none.GetBitmap(), nullptr);
    EXPECT_EQ(asserts.Count(), 0U);
}

TEST(Texture, UseSetsTheTextureAndNothingElse)
{
    Kanvo_Screen            screen(nullptr);
    const Kanvo_RenderState before = screen.GetRenderState();
    Kanvo_Texture           texture;
    texture.Use(screen.GetRenderState());
    EXPECT_EQ(screen.GetRenderState().GetPtr(TEXTURE), &texture);
    for (unsigned slot = 0; slot < Kanvo_RS_QUANTITY; ++slot)
    {
        const auto state = static_cast<RenderStates>(slot);
        if (state != TEXTURE)
        {
            EXPECT_EQ(screen.GetRenderState().GetUInt(state), before.GetUInt(state)) << slot;
        }
    }
}

// ---- frames ---------------------------------------------------------------------------------------------------------

namespace
{

struct Axes
{
    float ox, oy, oz;
    float ux, uy, uz;
    float vx, vy, vz;
};

class FrameOf
{
public:
    FrameOf(const Axes& axes, Texture_Modes mode)
    {
        Kanvo_Screen       screen(nullptr);
        Kanvo_RenderState& state = screen.GetRenderState();
        state.Set(TEXTUREMODE, mode);
        state.Set(TEXORIGINX, axes.ox);
        state.Set(TEXORIGINY, axes.oy);
        state.Set(TEXORIGINZ, axes.oz);
        state.Set(TEXUAXISX, axes.ux);
        state.Set(TEXUAXISY, axes.uy);
        state.Set(TEXUAXISZ, axes.uz);
        state.Set(TEXVAXISX, axes.vx);
        state.Set(TEXVAXISY, axes.vy);
        state.Set(TEXVAXISZ, axes.vz);
        support::AssertCapture asserts;
        made     = Kanvo_MakeTextureFrame(state, frame, perspective);
        messages = asserts.Take();
    }

    Kanvo_Polygon_TextureFrame frame{};
    Tov_Bool                   perspective = false;
    Tov_Bool                   made        = false;
    support::Messages          messages;

    //! The texel position at pixel (x, y), whichever layout.
    double U(int x, int y) const
    {
        const auto& fixed    = frame.kFixed;
        const auto& floating = frame.kFloating;
        if (!perspective)
            return (fixed.m_fxU0 + static_cast<double>(x) * fixed.m_fxUX + static_cast<double>(y) * fixed.m_fxUY) /
                   65536.0;
        return At(floating.m_fU0, floating.m_fUX, floating.m_fUY, x, y) / Z(x, y);
    }
    double V(int x, int y) const
    {
        const auto& fixed    = frame.kFixed;
        const auto& floating = frame.kFloating;
        if (!perspective)
            return (fixed.m_fxV0 + static_cast<double>(x) * fixed.m_fxVX + static_cast<double>(y) * fixed.m_fxVY) /
                   65536.0;
        return At(floating.m_fV0, floating.m_fVX, floating.m_fVY, x, y) / Z(x, y);
    }

private:
    static double At(float zero, float perX, float perY, int x, int y)
    {
        return static_cast<double>(zero) + x * static_cast<double>(perX) + y * static_cast<double>(perY);
    }
    double Z(int x, int y) const
    {
        const auto& floating = frame.kFloating;
        return At(floating.m_fZ0, floating.m_fZX, floating.m_fZY, x, y);
    }
};

constexpr float INF       = std::numeric_limits<float>::infinity();
constexpr float NAN_VALUE = std::numeric_limits<float>::quiet_NaN();

}  // namespace

TEST(Texture, ANewStateLaysTexelsOnPixelsSeenAtTheirMiddle)
{
    const Kanvo_Screen         screen(nullptr);
    Kanvo_Polygon_TextureFrame frame{};
    Tov_Bool                   perspective = true;
    ASSERT_TRUE(Kanvo_MakeTextureFrame(screen.GetRenderState(), frame, perspective));
    EXPECT_FALSE(perspective);
    EXPECT_EQ(frame.kFixed.m_fxU0, 0x8000);
    EXPECT_EQ(frame.kFixed.m_fxUX, 0x10000);
    EXPECT_EQ(frame.kFixed.m_fxUY, 0);
    EXPECT_EQ(frame.kFixed.m_fxV0, 0x8000);
    EXPECT_EQ(frame.kFixed.m_fxVX, 0);
    EXPECT_EQ(frame.kFixed.m_fxVY, 0x10000);
}

TEST(Texture, AFlatPlaneLeadsFromTexelsToPixelsAndTheFrameBack)
{
    Dice dice(21);
    for (int turn = 0; turn < 20000; ++turn)
    {
        const auto any  = [&](float reach) { return support::Uniform(dice, -reach, reach); };
        Axes       axes = {};
        axes.ox         = any(100);
        axes.oy         = any(100);
        axes.oz         = any(5);
        axes.ux         = any(4);
        axes.uy         = any(4);
        axes.uz         = any(5);
        axes.vx         = any(4);
        axes.vy         = any(4);
        axes.vz         = any(5);
        if (std::fabs(axes.ux * axes.vy - axes.uy * axes.vx) < 0.5F) continue;
        const FrameOf frame(axes, TM_PLANE2D);
        ASSERT_TRUE(frame.made);
        EXPECT_FALSE(frame.perspective);
        for (const auto& [x, y] : {std::pair{0, 0}, {31, 0}, {0, 31}, {17, 5}})
        {
            // back to the middle of the pixel
            const double u = frame.U(x, y);
            const double v = frame.V(x, y);
            const double px =
                static_cast<double>(axes.ox) + u * static_cast<double>(axes.ux) + v * static_cast<double>(axes.vx);
            const double py =
                static_cast<double>(axes.oy) + u * static_cast<double>(axes.uy) + v * static_cast<double>(axes.vy);
            ASSERT_NEAR(px, x + 0.5, 0.005) << turn;
            ASSERT_NEAR(py, y + 0.5, 0.005) << turn;
        }
    }
}

TEST(Texture, APlaneInSpaceLeadsFromTexelsToPixelsAndTheFrameBack)
{
    Dice dice(22);
    int  looked = 0;
    for (int turn = 0; turn < 20000; ++turn)
    {
        const auto any  = [&](float reach) { return support::Uniform(dice, -reach, reach); };
        Axes       axes = {};
        axes.ox         = any(60);
        axes.oy         = any(60);
        axes.oz         = support::Uniform(dice, 0.5F, 4.0F);
        axes.ux         = any(4);
        axes.uy         = any(4);
        axes.uz         = any(0.02F);
        axes.vx         = any(4);
        axes.vy         = any(4);
        axes.vz         = any(0.02F);
        if (std::fabs(axes.ux * axes.vy - axes.uy * axes.vx) < 1.0F) continue;
        const FrameOf frame(axes, TM_PLANE3D);
        ASSERT_TRUE(frame.made) << turn;
        EXPECT_TRUE(frame.perspective);
        for (const auto& [x, y] : {std::pair{0, 0}, {31, 0}, {0, 31}, {17, 5}})
        {
            const double u  = frame.U(x, y);
            const double v  = frame.V(x, y);
            const auto   at = [&](float o, float du, float dv)
            { return static_cast<double>(o) + u * static_cast<double>(du) + v * static_cast<double>(dv); };
            const double depth = at(axes.oz, axes.uz, axes.vz);
            if (std::fabs(depth) < 0.1 || std::fabs(u) > 1000 || std::fabs(v) > 1000) continue;  // near the horizon
            ++looked;
            ASSERT_NEAR(at(axes.ox, axes.ux, axes.vx) / depth, x + 0.5, 0.01) << turn;
            ASSERT_NEAR(at(axes.oy, axes.uy, axes.vy) / depth, y + 0.5, 0.01) << turn;
        }
    }
    EXPECT_GT(looked, 20000);
}

TEST(Texture, OriginsFarAwayWrapAsTexturesDo)
{
    const FrameOf near({0, 0, 0, 1, 0, 0, 0, 1, 0}, TM_PLANE2D);
    const FrameOf far({-65536.0F * 8, 65536.0F * 3, 0, 1, 0, 0, 0, 1, 0}, TM_PLANE2D);
    ASSERT_TRUE(far.made);
    EXPECT_EQ(far.frame.kFixed.m_fxU0, near.frame.kFixed.m_fxU0);
    EXPECT_EQ(far.frame.kFixed.m_fxV0, near.frame.kFixed.m_fxV0);
}

TEST(Texture, AxesThatSpanNoPlaneOrAreNoNumbersGiveNoFrame)
{
    const Axes good = {1, 2, 1, 1, 0, 0, 0, 1, 0};
    const auto none = [](const Axes& axes, Texture_Modes mode)
    {
        const FrameOf frame(axes, mode);
        return !frame.made && frame.messages == support::Messages{"texture axes span no plane"};
    };
    EXPECT_TRUE(FrameOf(good, TM_PLANE2D).made);
    EXPECT_TRUE(FrameOf(good, TM_PLANE3D).made);
    for (const Texture_Modes mode : {TM_PLANE2D, TM_PLANE3D})
    {
        EXPECT_TRUE(none({1, 2, 1, 0, 0, 0, 0, 1, 0}, mode)) << "no U";
        EXPECT_TRUE(none({1, 2, 1, 1, 0, 0, 0, 0, 0}, mode)) << "no V";
        EXPECT_TRUE(none({1, 2, 1, 2, 1, 0, 4, 2, 0}, mode)) << "parallel";
        for (int slot = 0; slot < 9; ++slot)
        {
            for (const float value : {NAN_VALUE, INF, -INF})
            {
                const bool read  = mode == TM_PLANE3D || slot % 3 != 2;
                Axes       axes  = good;
                float*     all[] = {&axes.ox, &axes.oy, &axes.oz, &axes.ux, &axes.uy,
                                    &axes.uz, &axes.vx, &axes.vy, &axes.vz};
                *all[slot]       = value;
                EXPECT_EQ(none(axes, mode), read) << slot << ' ' << value << ' ' << mode;
            }
        }
    }
    // a plane through the eye is seen edge-on
    EXPECT_TRUE(none({1, 2, 0, 1, 0, 0, 0, 1, 0}, TM_PLANE3D));
    EXPECT_TRUE(none({0, 0, 1, 1, 0, 0, 0, 0, 1}, TM_PLANE3D));
    // the smallest axes there are overflow what is left of them
    EXPECT_TRUE(none({1, 2, 1, 1e-42F, 0, 0, 0, 1, 0}, TM_PLANE2D));
}

TEST(Texture, OtherModesGiveNoFrame)
{
    for (const auto mode : {TM_UV, TM_DIRECT, static_cast<Texture_Modes>(0), static_cast<Texture_Modes>(99)})
    {
        const FrameOf frame({1, 2, 1, 1, 0, 0, 0, 1, 0}, mode);
        EXPECT_FALSE(frame.made);
        EXPECT_EQ(frame.messages, support::Messages{"texture mode not supported"});
    }
}
