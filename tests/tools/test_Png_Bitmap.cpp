// Tests of Png_Bitmap: every format holds the pixels that its definition says.
#include "Png_Bitmap.h"

#include <gtest/gtest.h>

namespace
{

class PngBitmap : public testing::Test
{
protected:
    template <class Pixel>
    std::vector<Pixel> Pixels(const png::Image& image, BitmapType format)
    {
        m_bitmap = png::MakeBitmap(image, format, m_screen);
        if (m_bitmap == nullptr)
        {
            ADD_FAILURE() << "no bitmap";
            return {};
        }
        EXPECT_EQ(m_bitmap->GetType(), format);
        EXPECT_EQ(m_bitmap->GetWidth(), image.width);
        EXPECT_EQ(m_bitmap->GetHeight(), image.height);
        std::vector<Pixel> pixels;
        const auto*        row = static_cast<const std::uint8_t*>(m_bitmap->GetBuffer());
        for (std::uint32_t y = 0; y < image.height; ++y, row += m_bitmap->GetPitch())
        {
            const auto* first = reinterpret_cast<const Pixel*>(row);
            pixels.insert(pixels.end(), first, first + image.width);
        }
        return pixels;
    }

    Kanvo                         m_library;
    Kanvo_Screen                  m_screen{&m_library};
    std::unique_ptr<Kanvo_Bitmap> m_bitmap;
};

//! Three columns, two rows.
png::Image Sample(bool hasAlpha)
{
    const std::uint32_t alpha = hasAlpha ? 0x40000000U : 0xFF000000U;
    return {3,        2,  {alpha | 0x123456U, 0xFFFFFFFFU, 0xFF000000U, 0xFF0000FFU, 0xFF00FF00U, 0xFFFF0000U},
            hasAlpha, {}, {}};
}

TEST_F(PngBitmap, Argb32KeepsEveryPixel)
{
    EXPECT_EQ(Pixels<Kanvo_PixelARGB32>(Sample(true), BM_ARGB32), Sample(true).argb);
    EXPECT_TRUE(m_bitmap->HasAlpha());
    EXPECT_EQ(Pixels<Kanvo_PixelARGB32>(Sample(false), BM_ARGB32), Sample(false).argb);
    EXPECT_FALSE(m_bitmap->HasAlpha());
}

TEST_F(PngBitmap, Rgb32KeepsTheColoursUnderAnOpaqueTopByte)
{
    EXPECT_EQ(
        Pixels<Kanvo_PixelRGB32>(Sample(true), BM_RGB32),
        (std::vector<Kanvo_PixelRGB32>{0xFF123456U, 0xFFFFFFFFU, 0xFF000000U, 0xFF0000FFU, 0xFF00FF00U, 0xFFFF0000U}));
}

TEST_F(PngBitmap, Rgb565CutsTheLowBits)
{
    EXPECT_EQ(Pixels<Kanvo_PixelRGB565>(Sample(true), BM_RGB565),
              (std::vector<Kanvo_PixelRGB565>{0x11AA, 0xFFFF, 0x0000, 0x001F, 0x07E0, 0xF800}));
}

TEST_F(PngBitmap, A8TakesTheAlphaOfAPictureThatHasSome)
{
    EXPECT_EQ(Pixels<Kanvo_PixelA8>(Sample(true), BM_ALPHA8),
              (std::vector<Kanvo_PixelA8>{0x40, 255, 255, 255, 255, 255}));
}

TEST_F(PngBitmap, A8TakesTheBrightnessOfAnOpaquePicture)
{
    // 0x12, 0x34, 0x56: (299 * 18 + 587 * 52 + 114 * 86 + 500) / 1000 = 46210 / 1000
    EXPECT_EQ(Pixels<Kanvo_PixelA8>(Sample(false), BM_ALPHA8), (std::vector<Kanvo_PixelA8>{46, 255, 0, 29, 150, 76}));
}

TEST_F(PngBitmap, AGreyPictureIsItsOwnBrightness)
{
    for (std::uint32_t level = 0; level < 256; ++level)
    {
        EXPECT_EQ(png::Luminance(level * 0x010101U), level);
    }
}

TEST_F(PngBitmap, AFormatWithoutConversionGivesNoBitmap)
{
    for (const BitmapType format : {BM_UNKNWON, BM_RGB32RLE8, BM_RGB32RLE16, BM_RGB555, BM_ALPHA5_2, BM_ALPHA1})
    {
        EXPECT_EQ(png::MakeBitmap(Sample(false), format, m_screen), nullptr);
    }
}

}  // namespace
