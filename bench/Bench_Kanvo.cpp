// Bench_Kanvo: the library as a contender, in every way that it can draw on this machine.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <Kanvo.h>

#include "Bench_Contender.h"
#include "Image_Palette.h"
#include "Image_Rle.h"

namespace bench
{
namespace
{

Tov_UInt Unsigned(int value)
{
    return static_cast<Tov_UInt>(value);
}

Tov_Value Single(double value)
{
    return static_cast<Tov_Value>(value);
}

//! A picture with soft edges is blended below full opacity only; at 255 it would be copied.
constexpr Tov_UByte BLENDED = 254;

//! What one job needs to stay alive: a screen with a render state of its own, the target, the sources.
struct Stage
{
    Kanvo              library;
    Kanvo_Screen       screen{&library};
    Kanvo_BitmapARGB32 target;

    std::unique_ptr<Kanvo_Bitmap>   source;
    std::unique_ptr<Kanvo_BitmapA8> mask;
    std::vector<std::uint8_t>       stored;
    Kanvo_Pattern                   pattern;
    Kanvo_Texture                   texture;

    std::vector<std::vector<Kanvo_Coord2D>> polygons;

    Stage(const Input& input, const Picture& picture)
        : target(&screen, Unsigned(picture.width), Unsigned(picture.height), BBT_RAM, picture.Bytes())
    {
        target.Lock();
        MakeSource(input);
        if (input.mask)
        {
            mask = std::make_unique<Kanvo_BitmapA8>(&screen, Unsigned(input.kind.sourceWidth),
                                                    Unsigned(input.kind.sourceHeight), BBT_RAM, input.mask->Bytes());
        }
        for (const std::vector<Point>& polygon : input.polygons)
        {
            polygons.emplace_back();
            for (const Point& p : polygon) polygons.back().push_back({Single(p.x), Single(p.y)});
        }
    }

private:
    void MakeSource(const Input& input)
    {
        const Tov_UInt width = Unsigned(input.kind.sourceWidth), height = Unsigned(input.kind.sourceHeight);
        if (input.kind.operation == Operation::Rle)
        {
            const std::vector<std::uint32_t> pixels(input.source->Pixels(),
                                                    input.source->Pixels() + input.source->Count());
            const auto                       indexed =
                image::ExactPalette(pixels, image::LongestPalette(image::Unit::Bits8), image::Hidden::Keep);
            stored = image::BuildImage(indexed.value(), width, height, image::Unit::Bits8);
            source = std::make_unique<Kanvo_BitmapRLE>(&screen, stored.data(), stored.size(), true);
            mask   = std::make_unique<Kanvo_BitmapA8>(&screen, 1U, 1U);  // asked for, and not read
        }
        else if (input.rgb565)
        {
            source = std::make_unique<Kanvo_BitmapRGB565>(&screen, width, height, BBT_RAM, input.rgb565->Bytes());
        }
        else if (input.source)
        {
            source = std::make_unique<Kanvo_BitmapARGB32>(&screen, width, height, BBT_RAM, input.source->Bytes());
            source->Lock();
            source->Unlock(0, 0, width - 1, height - 1);  // finds out whether it is opaque
        }
    }
};

//! Calls draw(x, y) for every rectangle's top-left corner. The stage lives as long as the run.
template <class Draw>
std::function<void(int)> Places(const Input& input, std::shared_ptr<Stage> stage, Draw draw)
{
    return EachPlace(input, [stage = std::move(stage), draw](int x, int y) { draw(*stage, x, y); });
}

std::function<void(int)> Rectangles(const Input& input, const std::shared_ptr<Stage>& stage)
{
    const Case&       kind  = input.kind;
    const Tov_UInt    width = Unsigned(kind.width), height = Unsigned(kind.height);
    const Kanvo_Color color = kind.color;
    Tov_UByte         alpha = 255;
    if (kind.operation == Operation::OverAlpha || kind.operation == Operation::Blend565) alpha = GLOBAL_ALPHA;
    switch (kind.operation)
    {
    case Operation::FillOpaque:
    case Operation::FillBlend:
        return Places(input, stage, [=](Stage& s, int x, int y) { s.target.FillRect(width, height, x, y, color, 0); });
    case Operation::Over:  // without a map: by the source's own alpha
        return Places(input, stage,
                      [=](Stage& s, int x, int y)
                      { s.target.BlitAlpha(s.source.get(), nullptr, width, height, 0, 0, x, y, 0, 255); });
    case Operation::PictureByMask:
    case Operation::Picture565ByMask:
    case Operation::Rle:
        return Places(input, stage,
                      [=](Stage& s, int x, int y)
                      { s.target.BlitAlpha(s.source.get(), s.mask.get(), width, height, 0, 0, x, y, 0, 255); });
    case Operation::ColorByMask:
        return Places(input, stage,
                      [=](Stage& s, int x, int y)
                      { s.target.BlitColor(s.mask.get(), width, height, 0, 0, x, y, color, 0, 255); });
    default:
        return Places(input, stage,
                      [=](Stage& s, int x, int y)
                      { s.target.Blit(s.source.get(), width, height, 0, 0, x, y, 0, alpha, 0); });
    }
}

std::function<void(int)> Stretches(const Input& input, const std::shared_ptr<Stage>& stage)
{
    const Case&     kind        = input.kind;
    const Tov_UInt  sourceWidth = Unsigned(kind.sourceWidth), sourceHeight = Unsigned(kind.sourceHeight);
    const Tov_UInt  width = Unsigned(kind.width), height = Unsigned(kind.height);
    const Tov_Flag  flags = kind.bilinear ? Tov_Flag{BLIT_BILINEAR} : 0;
    const Tov_UByte alpha = kind.over ? BLENDED : 255;
    return Places(input, stage,
                  [=](Stage& s, int x, int y) {
                      s.target.StretchBlit(s.source.get(), sourceWidth, sourceHeight, 0, 0, width, height, x, y, flags,
                                           alpha, 0);
                  });
}

std::function<void(int)> Rotations(const Input& input, const std::shared_ptr<Stage>& stage)
{
    const Tov_UInt  side   = Unsigned(input.kind.sourceWidth);
    const Tov_Flag  flags  = input.kind.bilinear ? Tov_Flag{BLIT_BILINEAR} : 0;
    const Tov_Value middle = Single(input.kind.sourceWidth / 2.0);
    return Each(
        [=, &input](int i)
        {
            const Point& place = input.Place(i);
            stage->target.RotBlit(stage->source.get(), side, side, 0, 0, Single(place.x), Single(place.y),
                                  Single(ANGLE), flags, 1, 1, middle, middle, BLENDED, 0);
        });
}

std::function<void(int)> Lines(const Input& input, const std::shared_ptr<Stage>& stage)
{
    const Case& kind  = input.kind;
    Tov_Flag    flags = kind.smooth ? Kanvo_LF_ANTIALIAS : Kanvo_LF_NONE;
    if (kind.dashed)
    {
        const Tov_Value lengths[] = {Single(DASH), Single(DASH)};
        stage->pattern.SetDashes(lengths, 2, kind.color, 0);
        stage->pattern.Use(stage->screen.GetRenderState());
        flags |= Kanvo_LF_PATTERN;
    }
    const Tov_Value   width = Single(kind.lineWidth);
    const Kanvo_Color color = kind.color;
    return Each(
        [=, &input](int i)
        {
            const Segment& line = input.Line(i);
            stage->target.DrawLine({Single(line.from.x), Single(line.from.y)}, {Single(line.to.x), Single(line.to.y)},
                                   color, flags, width, width);
        });
}

std::function<void(int)> Polygons(const Input& input, const std::shared_ptr<Stage>& stage)
{
    const Case& kind  = input.kind;
    Tov_Flag    flags = kind.smooth ? POLY_ANTIALIAS : POLY_NONE;
    if (kind.textured)
    {
        Kanvo_RenderState& state = stage->screen.GetRenderState();
        const Affine       frame = input.TextureFrame();
        stage->texture.SetBitmap(stage->source.get());
        stage->texture.Use(state);
        state.Set(TEXTUREENABLE, true);
        state.Set(TEXORIGINX, Single(frame.x0));
        state.Set(TEXORIGINY, Single(frame.y0));
        state.Set(TEXUAXISX, Single(frame.xx));
        state.Set(TEXUAXISY, Single(frame.yx));
        state.Set(TEXVAXISX, Single(frame.xy));
        state.Set(TEXVAXISY, Single(frame.yy));
        flags |= POLY_USE_RENDERSTATE;
    }
    const Kanvo_Color color = kind.color;
    return Each(
        [=, &input](int i)
        {
            const std::vector<Kanvo_Coord2D>& polygon = stage->polygons[input.PolygonIndex(i)];
            stage->target.DrawPolygon(polygon.data(), static_cast<Tov_UInt>(polygon.size()), color, flags);
        });
}

std::function<void(int)> Dots(const Input& input, const std::shared_ptr<Stage>& stage)
{
    const Tov_Value   radius = Single(input.kind.radius);
    const Kanvo_Color color  = input.kind.color;
    return Each(
        [=, &input](int i)
        {
            const Point& place = input.Place(i);
            stage->target.DrawDot(Single(place.x), Single(place.y), radius, color, Kanvo_LF_ANTIALIAS);
        });
}

class KanvoContender : public Contender
{
public:
    KanvoContender(Kanvo_Level level, Optimized_Blit loops) : m_level(level), m_loops(loops) {}

    std::string Name() const override
    {
        return std::string("Kanvo ") + Kanvo_LevelName(m_level) + (m_loops == OB_NONE ? ", no loops" : "");
    }
    std::string Version() const override { return m_loops == OB_NONE ? "OPTIMIZED_BLIT off" : "OPTIMIZED_BLIT on"; }

    Job Prepare(const Input& input) override
    {
        if (m_loops == OB_NONE && input.kind.IsShape()) return {};  // lines, polygons and dots do not ask for it
        // Through a map only one way reads what the case means: the loops not the map of an ARGB32 picture, the others
        // not the colours of an RGB565 one (docs/KEPT.md).
        if (input.kind.operation == Operation::PictureByMask && m_loops != OB_NONE) return {};
        if (input.kind.operation == Operation::Picture565ByMask && m_loops == OB_NONE) return {};
        Job        job;
        const auto target = MakeTarget(input);
        const auto stage  = std::make_shared<Stage>(input, *target);
        stage->screen.GetRenderState().Set(OPTIMIZED_BLIT, m_loops);
        job.target = target;
        job.run    = [run = Choose(input, stage), target, level = m_level](int count)
        {
            Kanvo_SelectRows(level);
            run(count);
        };
        return job;
    }

private:
    static std::function<void(int)> Choose(const Input& input, const std::shared_ptr<Stage>& stage)
    {
        switch (input.kind.operation)
        {
        case Operation::Stretch: return Stretches(input, stage);
        case Operation::Rotate: return Rotations(input, stage);
        case Operation::Line: return Lines(input, stage);
        case Operation::Polygon: return Polygons(input, stage);
        case Operation::Dot: return Dots(input, stage);
        default: return Rectangles(input, stage);
        }
    }

    Kanvo_Level    m_level;
    Optimized_Blit m_loops;
};

}  // namespace

Contenders KanvoContenders()
{
    Contenders contenders;
    for (const Kanvo_Level level : {KL_AVX2, KL_NEON, KL_PORTABLE})  // the first is the one that users get
    {
        if (Kanvo_SelectRows(level) != level) continue;
        contenders.push_back(std::make_unique<KanvoContender>(level, OB_NEON));
        contenders.push_back(std::make_unique<KanvoContender>(level, OB_NONE));
    }
    return contenders;
}

}  // namespace bench
