// hello: draws a small picture and writes it to hello.ppm, which most image viewers open.
#include <cstdio>

#include <Kanvo.h>

int main()
{
    constexpr Tov_UInt WIDTH = 160, HEIGHT = 72;

    Kanvo              library;           // hands out the memory behind bitmaps
    Kanvo_Screen       screen(&library);  // keeps the render state that its bitmaps share
    Kanvo_BitmapARGB32 target(&screen, WIDTH, HEIGHT);

    auto* pixels = static_cast<Tov_UInt*>(target.Lock());  // drawing goes between Lock and Unlock
    target.Clear(0xFF203040);                              // 0xAARRGGBB
    target.FillRect(60, 40, 12, 12, 0xFFE0A020, 0);
    target.FillRect(60, 40, 40, 4, 0x8060C0FF, 0);  // translucent: blended over what is there

    Kanvo_BitmapA8 mask(&screen, 32, 32);  // coverage: 0 leaves a pixel, 255 paints it
    auto*          cover = static_cast<Tov_UByte*>(mask.Lock());
    for (int i = 0; i < 32 * 32; ++i)
    {
        const int x = i % 32 * 2 - 31, y = i / 32 * 2 - 31, inside = 31 * 31 - x * x - y * y;
        cover[i] = static_cast<Tov_UByte>(inside <= 0 ? 0 : inside >= 255 ? 255 : inside);
    }
    mask.Unlock(0, 0, 31, 31);
    target.BlitColor(&mask, 32, 32, 0, 0, 116, 16, 0xFFFFFFFF, 0, 255);
    target.DebugText("Hello, Kanvo!", 12, 56, 0xFFFFFFFF);
    target.Unlock(0, 0, WIDTH - 1, HEIGHT - 1);

    std::FILE* file = std::fopen("hello.ppm", "wb");
    if (file == nullptr) return 1;
    std::fprintf(file, "P6 %u %u 255\n", unsigned{WIDTH}, unsigned{HEIGHT});
    for (Tov_UInt i = 0; i < WIDTH * HEIGHT; ++i)
        for (int shift = 16; shift >= 0; shift -= 8) std::fputc(static_cast<int>(pixels[i] >> shift & 255), file);
    return std::fclose(file) == 0 ? 0 : 1;
}
