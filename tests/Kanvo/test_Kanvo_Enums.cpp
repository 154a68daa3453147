// Tests of Kanvo_Enums: every value, written out once more. Stored images and applications rely on them.
#include "Kanvo_Enums.h"

#include <type_traits>

#include <gtest/gtest.h>

namespace
{

TEST(Enums, BitmapTypesHaveTheirExactValues)
{
    EXPECT_EQ(BM_UNKNWON, 0);
    EXPECT_EQ(BM_RGB32, 1);
    EXPECT_EQ(BM_RGB32RLE8, 2);
    EXPECT_EQ(BM_RGB32RLE16, 3);
    EXPECT_EQ(BM_ARGB32, 4);
    EXPECT_EQ(BM_ALPHA8, 5);
    EXPECT_EQ(BM_RGB565, 6);
    EXPECT_EQ(BM_RGB555, 7);
    EXPECT_EQ(BM_ALPHA5_2, 8);
    EXPECT_EQ(BM_ALPHA1, 9);
    EXPECT_EQ(BM_QUANTITY, 10);
}

TEST(Enums, BufferTypesHaveTheirExactValues)
{
    EXPECT_EQ(BBT_KANVO, 0);
    EXPECT_EQ(BBT_RAM, 1);
    EXPECT_EQ(BBT_ROM, 2);
    EXPECT_EQ(BBT_QUANTITY, 3);
}

TEST(Enums, BlitFlagsHaveTheirExactBits)
{
    EXPECT_EQ(BLIT_COLORKEY, 0x1U);
    EXPECT_EQ(BLIT_BILINEAR, 0x40000U);
    EXPECT_EQ(BLIT_NOCLIP, 0x100000U);
    EXPECT_EQ(BLIT_ASPECT, 0x200000U);
}

TEST(Enums, AspectAndCopyOnlyAlphaShareOneBitOnPurpose)
{
    EXPECT_EQ(BLIT_COPY_ONLY_ALPHA, 0x200000U);
    EXPECT_EQ(BLIT_COPY_ONLY_ALPHA, BLIT_ASPECT);
}

TEST(Enums, PolygonFlagsHaveTheirExactBits)
{
    EXPECT_EQ(POLY_NONE, 0U);
    EXPECT_EQ(POLY_USE_RENDERSTATE, 0x1U);
    EXPECT_EQ(POLY_EXTRUDE, 0x80U);
    EXPECT_EQ(POLY_HINT_CW, 0x100U);
    EXPECT_EQ(POLY_HINT_CCW, 0x200U);
    EXPECT_EQ(POLY_ANTIALIAS, 0x10000U);
    EXPECT_EQ(POLY_HQAA, 0x20000U);
    EXPECT_EQ(POLY_NOCLIP, 0x100000U);
    EXPECT_EQ(static_cast<Tov_Flag>(POLY_NOCLIP), static_cast<Tov_Flag>(BLIT_NOCLIP));
}

TEST(Enums, RenderStatesAreThirtyFourSlotsInTheirOrder)
{
    constexpr RenderStates ORDER[] = {COLOR1,
                                      COLOR2,
                                      ALPHA,
                                      ALPHAENABLE,
                                      LINEWIDTH,
                                      POINTSIZE,
                                      BASEDEPTH,
                                      CULLING,
                                      TEXTUREENABLE,
                                      TEXTUREMODE,
                                      TEXORIGINX,
                                      TEXORIGINY,
                                      TEXORIGINZ,
                                      TEXUAXISX,
                                      TEXUAXISY,
                                      TEXUAXISZ,
                                      TEXVAXISX,
                                      TEXVAXISY,
                                      TEXVAXISZ,
                                      TEXTURE,
                                      TEXTUREBLENDING,
                                      LINEPATTERN,
                                      LINEPATTERNENABLE,
                                      LINEPATTERNSCALE,
                                      LINEPATTERNOFFSET,
                                      VERTEXCOLORENABLE,
                                      TEXTUREWRAPU,
                                      TEXTUREWRAPV,
                                      TEXTUREFILTER,
                                      OPTIMIZED_BLIT,
                                      I_TEXMATVALID,
                                      I_TEXMATCACHE,
                                      I_LINPATFACTOR,
                                      I_LINPATREFLEN,
                                      Kanvo_RS_QUANTITY};
    int                    slot    = 0;
    for (const RenderStates state : ORDER) EXPECT_EQ(state, slot++);
    EXPECT_EQ(Kanvo_RS_QUANTITY, 34);
    // A few by their number, in case the list above repeats a mistake.
    EXPECT_EQ(ALPHA, 2);
    EXPECT_EQ(TEXTUREENABLE, 8);
    EXPECT_EQ(TEXVAXISY, 17);
    EXPECT_EQ(TEXTURE, 19);
    EXPECT_EQ(LINEPATTERN, 21);
    EXPECT_EQ(OPTIMIZED_BLIT, 29);
    EXPECT_EQ(I_LINPATREFLEN, 33);
}

TEST(Enums, TextureModesBlendingsAndOptimisationsHaveTheirExactValues)
{
    EXPECT_EQ(TM_PLANE2D, 1U);
    EXPECT_EQ(TM_PLANE3D, 2U);
    EXPECT_EQ(TM_UV, 4U);
    EXPECT_EQ(TM_DIRECT, 5U);
    EXPECT_EQ(TB_NORMAL, 0U);
    EXPECT_EQ(TB_MULTIPLY, 1U);
    EXPECT_EQ(TB_ADD, 2U);
    EXPECT_EQ(TB_COLOR, 3U);
    EXPECT_EQ(OB_NONE, 0U);
    EXPECT_EQ(OB_NEON, 1U);
}

TEST(Enums, TypesStoredInAByteAreAByteWideWithEveryCompiler)
{
    EXPECT_EQ(sizeof(BitmapType), 1U);
    EXPECT_EQ(sizeof(BitmapBufferType), 1U);
    EXPECT_EQ(sizeof(RenderStates), 1U);
    EXPECT_TRUE(std::is_unsigned_v<std::underlying_type_t<RenderStates>>);
    EXPECT_EQ(sizeof(DrawBlit_Flags), sizeof(Tov_Flag));
    EXPECT_EQ(sizeof(DrawPolygon_Flags), sizeof(Tov_Flag));
}

}  // namespace
