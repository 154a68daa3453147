// Png_Writer: the thin layer over libpng.
#include "Png_Writer.h"

#include <cstdio>
#include <cstdlib>

#include <png.h>

namespace pictures
{

namespace
{

[[noreturn]] void Fail(const char* path, const char* reason)
{
    std::fprintf(stderr, "%s: %s\n", path, reason);
    std::exit(EXIT_FAILURE);
}

//! Called by libpng, which counts on it not to return; the error pointer is the path.
[[noreturn]] void OnError(png_structp writer, png_const_charp reason)
{
    Fail(static_cast<const char*>(png_get_error_ptr(writer)), reason);
}

int ColourType(Kind kind)
{
    switch (kind)
    {
    case Kind::Grey8:
    case Kind::Grey16: return PNG_COLOR_TYPE_GRAY;
    case Kind::Rgb8: return PNG_COLOR_TYPE_RGB;
    case Kind::Rgba8: return PNG_COLOR_TYPE_RGB_ALPHA;
    case Kind::Palette8: return PNG_COLOR_TYPE_PALETTE;
    }
    return PNG_COLOR_TYPE_RGB_ALPHA;
}

std::size_t BytesPerPixel(Kind kind)
{
    switch (kind)
    {
    case Kind::Grey8:
    case Kind::Palette8: return 1;
    case Kind::Grey16: return 2;
    case Kind::Rgb8: return 3;
    case Kind::Rgba8: return 4;
    }
    return 4;
}

//! Trailing opaque entries need no transparency; a palette without translucent colours gets none.
void SetPalette(png_structp writer, png_infop info, const std::vector<std::uint8_t>& palette)
{
    std::vector<png_color> colours;
    std::vector<png_byte>  alphas;
    std::size_t            translucent = 0;
    for (std::size_t entry = 0; entry + 3 < palette.size(); entry += 4)
    {
        colours.push_back({palette[entry], palette[entry + 1], palette[entry + 2]});
        alphas.push_back(palette[entry + 3]);
        if (alphas.back() != 255) translucent = alphas.size();
    }
    png_set_PLTE(writer, info, colours.data(), static_cast<int>(colours.size()));
    if (translucent != 0) png_set_tRNS(writer, info, alphas.data(), static_cast<int>(translucent), nullptr);
}

}  // namespace

void Write(const std::string& path, const Png& png)
{
    const std::size_t pitch = static_cast<std::size_t>(png.width) * BytesPerPixel(png.kind);
    if (png.samples.size() != pitch * static_cast<std::size_t>(png.height))
        Fail(path.c_str(), "wrong number of samples");

    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) Fail(path.c_str(), "cannot be created");

    png_structp writer =
        png_create_write_struct(PNG_LIBPNG_VER_STRING, const_cast<char*>(path.c_str()), OnError, nullptr);
    png_infop info = writer != nullptr ? png_create_info_struct(writer) : nullptr;
    if (info == nullptr) Fail(path.c_str(), "out of memory");

    png_init_io(writer, file);
    png_set_IHDR(writer, info, static_cast<png_uint_32>(png.width), static_cast<png_uint_32>(png.height),
                 png.kind == Kind::Grey16 ? 16 : 8, ColourType(png.kind),
                 png.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(writer, 9);
    png_set_filter(writer, PNG_FILTER_TYPE_BASE, png.kind == Kind::Palette8 ? PNG_FILTER_NONE : PNG_ALL_FILTERS);
    if (png.kind == Kind::Palette8) SetPalette(writer, info, png.palette);

    // libpng takes rows to write as pointers to non-constant bytes and does not change them.
    std::vector<png_bytep> rows;
    for (int y = 0; y < png.height; ++y)
    {
        rows.push_back(const_cast<png_bytep>(png.samples.data() + pitch * static_cast<std::size_t>(y)));
    }
    png_set_rows(writer, info, rows.data());
    png_write_png(writer, info, PNG_TRANSFORM_IDENTITY, nullptr);
    png_destroy_write_struct(&writer, &info);
    if (std::fclose(file) != 0) Fail(path.c_str(), "cannot be written");
}

}  // namespace pictures
