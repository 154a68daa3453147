// Reference_Blit: fills and unscaled blits a second time, as slowly and plainly as they can be described. One channel at a
// time in signed integers, one pixel at a time through one reader for all formats, clipping in 64 bits. Shares nothing
// with the library: neither types nor code. The tests of blits, fills and loops compare with it.
#ifndef REFERENCE_BLIT_H
#define REFERENCE_BLIT_H

#include <cstdint>
#include <string>
#include <vector>

namespace reference
{

// ---- one pixel (the blends are those of NaiveMix.h) -----------------------------------------------------------------

//! One 16-bit pixel as an opaque word.
std::uint32_t WordOfRgb565(unsigned pixel);

//! An opaque grey.
std::uint32_t WordOfA8(unsigned level);

// ---- whole calls ----------------------------------------------------------------------------------------------------

enum class Format
{
    Argb32,
    Rgb32,
    Rgb565,
    A8,
    Alpha5_2,
    Other
};

std::int64_t BytesPerPixel(Format format);

//! A rectangle of pixels somewhere in memory.
struct Picture
{
    Format        format   = Format::Other;
    std::int64_t  width    = 0;
    std::int64_t  height   = 0;
    std::int64_t  pitch    = 0;  // bytes
    std::uint8_t* bytes    = nullptr;
    bool          hasAlpha = false;  // what the bitmap says of itself, whatever its pixels are
};

//! Inclusive bounds as the caller gave them: they may be inverted or lie anywhere.
struct Clip
{
    std::int64_t minX = 0;
    std::int64_t minY = 0;
    std::int64_t maxX = INT64_MAX;
    std::int64_t maxY = INT64_MAX;
};

//! Composes a word of the target's own encoding.
using Compose = std::uint32_t (*)(int a, int r, int g, int b);

std::uint32_t ComposeArgb32(int a, int r, int g, int b);

//! What is drawn into.
struct Target
{
    Picture picture;
    Clip    clip;
    bool    locked    = true;
    bool    optimised = false;  // the render state permits the loops
    Compose compose   = &ComposeArgb32;
};

//! Who does the work of a call.
enum class Worker
{
    Nobody,
    // portable, each with a performance counter
    Cpy,
    Int,
    Rgb,
    ColorInt,
    FillColor,
    // loops
    Copy,
    OverScaled,
    Convert565,
    Over565,
    ColorMask,
    ColorMaskScaled,
    Fill,
    FillMix
};

//! "Blit_CPY" for the portable workers, "neonloops_fill_argb32" for the loops, "" for nobody.
const char* NameOf(Worker worker);
bool        IsLoop(Worker worker);

//! What a call is expected to do besides changing the target's pixels.
template <class Who>
struct OutcomeOf
{
    std::vector<std::string> messages;
    Who                      worker = Who::Nobody;
    // what is left to be drawn after clipping; meaningless for Nobody
    std::int64_t width  = 0;
    std::int64_t height = 0;
    std::int64_t srcX   = 0;
    std::int64_t srcY   = 0;
    std::int64_t dstX   = 0;
    std::int64_t dstY   = 0;

    std::uint64_t Pixels() const { return worker == Who::Nobody ? 0 : static_cast<std::uint64_t>(width * height); }
};

using Outcome = OutcomeOf<Worker>;

//! Where a call wants to draw, as the caller says it.
struct Where
{
    std::uint32_t width  = 0;
    std::uint32_t height = 0;
    std::uint32_t srcX   = 0;
    std::uint32_t srcY   = 0;
    std::int32_t  dstX   = 0;
    std::int32_t  dstY   = 0;
};

//! Each draws into target.picture.bytes. The source may be the target itself.
Outcome Blit(const Target& target, const Picture& source, const Where& where, std::uint32_t flags, int alpha,
             std::uint32_t key);
Outcome BlitColor(const Target& target, const Picture& map, const Where& where, std::uint32_t color,
                  std::uint32_t flags, int alpha);
Outcome FillRect(const Target& target, const Where& where, std::uint32_t color, std::uint32_t flags);

}  // namespace reference

#endif
