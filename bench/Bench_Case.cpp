#include "Bench_Case.h"

#include <algorithm>
#include <cmath>

namespace bench
{
namespace
{

constexpr double PI = 3.14159265358979323846;

//! The same numbers on every machine.
class Random
{
public:
    explicit Random(std::uint32_t seed) : m_state(seed) {}

    std::uint32_t Bits24()
    {
        m_state = m_state * 1664525u + 1013904223u;
        return m_state >> 8;
    }
    double Fraction() { return Bits24() / 16777216.0; }
    int    Below(int limit) { return limit > 0 ? static_cast<int>(Bits24() % static_cast<std::uint32_t>(limit)) : 0; }
    double Whole(int limit) { return Below(limit); }

private:
    std::uint32_t m_state;
};

struct Size
{
    const char* name;
    int         targetWidth, targetHeight, width, height;
};

constexpr Size DOT_SIZE = {"1", 480, 272, 1, 1};  // what a call costs before the first pixel
constexpr Size SIZES[]  = {{"16", 480, 272, 16, 16},
                           {"64", 480, 272, 64, 64},
                           {"480x272", 480, 272, 480, 272},
                           {"1920x1080", 1920, 1080, 1920, 1080}};

void AddRectangles(std::vector<Case>& cases)
{
    struct Kind
    {
        const char* name;
        const char* group;
        Operation   operation;
        Content     content;
    };
    constexpr Kind KINDS[] = {
        {"fill_opaque", "Fills", Operation::FillOpaque, Content::Opaque},
        {"fill_blend", "Fills", Operation::FillBlend, Content::Opaque},
        {"copy", "Copy and convert", Operation::Copy, Content::Opaque},
        {"cvt565", "Copy and convert", Operation::Convert565, Content::Opaque},
        {"blend565_ga128", "Copy and convert", Operation::Blend565, Content::Opaque},
        {"over_random", "Blend", Operation::Over, Content::Random},
        {"over_icon", "Blend", Operation::Over, Content::Icon},
        {"over_opaque", "Blend", Operation::Over, Content::Opaque},
        {"over_ga128", "Blend", Operation::OverAlpha, Content::Random},
        {"over_ga128_icon", "Blend", Operation::OverAlpha, Content::Icon},
        {"over_ga128_opaque", "Blend", Operation::OverAlpha, Content::Opaque},
        {"mask_a8", "Masks and stored images", Operation::ColorByMask, Content::Icon},
        {"mask_a8_random", "Masks and stored images", Operation::ColorByMask, Content::Random},
        {"mask_a8_opaque", "Masks and stored images", Operation::ColorByMask, Content::Opaque},
        {"over_mask", "Masks and stored images", Operation::PictureByMask, Content::Icon},
        {"over_mask_random", "Masks and stored images", Operation::PictureByMask, Content::Random},
        {"over_mask_opaque", "Masks and stored images", Operation::PictureByMask, Content::Opaque},
        {"over565_mask", "Masks and stored images", Operation::Picture565ByMask, Content::Icon},
        {"rle", "Masks and stored images", Operation::Rle, Content::Icon},
    };
    for (const Kind& kind : KINDS)
    {
        std::vector<Size> sizes{DOT_SIZE};
        sizes.insert(sizes.end(), std::begin(SIZES), std::end(SIZES));
        for (const Size& size : sizes)
        {
            Case c;
            c.name        = std::string(kind.name) + "/" + size.name;
            c.group       = kind.group;
            c.operation   = kind.operation;
            c.content     = kind.content;
            c.targetWidth = size.targetWidth, c.targetHeight = size.targetHeight;
            c.width = size.width, c.height = size.height;
            c.repeats = size.width == size.targetWidth ? 1 : 256;
            if (kind.operation == Operation::FillBlend) c.color = 0x803366CC;
            if (!c.BesideMemset()) c.sourceWidth = size.width, c.sourceHeight = size.height;
            cases.push_back(c);
        }
    }
}

void AddStretches(std::vector<Case>& cases)
{
    struct Factor
    {
        const char* name;
        double      factor;
    };
    for (const bool bilinear : {false, true})
    {
        for (const Factor factor : {Factor{"2x", 2}, Factor{"0.5x", 0.5}, Factor{"1.37x", 1.37}})
        {
            for (const bool over : {false, true})
            {
                for (const Size& size : SIZES)
                {
                    Case c;
                    c.name = std::string("stretch_") + (bilinear ? "bilinear_" : "nearest_") + factor.name +
                             (over ? "_over/" : "/") + size.name;
                    c.group       = bilinear ? "Scaled, bilinear" : "Scaled, nearest";
                    c.operation   = Operation::Stretch;
                    c.content     = over ? Content::Icon : Content::Opaque;
                    c.targetWidth = size.targetWidth, c.targetHeight = size.targetHeight;
                    c.width = size.width, c.height = size.height;
                    c.sourceWidth  = static_cast<int>(size.width / factor.factor + 0.5);
                    c.sourceHeight = static_cast<int>(size.height / factor.factor + 0.5);
                    c.bilinear = bilinear, c.over = over;
                    c.repeats = size.width == size.targetWidth ? 1 : 256;
                    cases.push_back(c);
                }
            }
        }
    }
}

void AddRotations(std::vector<Case>& cases)
{
    struct Square
    {
        int targetWidth, targetHeight, side;
    };
    for (const bool bilinear : {false, true})
    {
        for (const Square s : {Square{480, 272, 16}, {480, 272, 64}, {480, 272, 190}, {1920, 1080, 760}})
        {
            Case c;
            c.name        = std::string("rotate30_") + (bilinear ? "bilinear/" : "nearest/") + std::to_string(s.side);
            c.group       = "Rotated by 30 degrees";
            c.operation   = Operation::Rotate;
            c.content     = Content::Icon;
            c.targetWidth = s.targetWidth, c.targetHeight = s.targetHeight;
            c.width = c.height = c.sourceWidth = c.sourceHeight = s.side;
            c.bilinear = bilinear, c.over = true;
            c.repeats = s.side < 100 ? 256 : 1;
            cases.push_back(c);
        }
    }
}

void AddLines(std::vector<Case>& cases)
{
    struct Kind
    {
        const char* name;
        bool        smooth;
        double      width;
        bool        dashed;
    };
    constexpr Kind KINDS[] = {{"line1_aliased", false, 1, false},
                              {"line1_aa", true, 1, false},
                              {"line5_aa", true, 5, false},
                              {"line1_dash", false, 1, true},
                              {"line5_dash_aa", true, 5, true}};
    for (const Kind& kind : KINDS)
    {
        for (const bool isShort : {false, true})
        {
            Case c;
            c.name      = std::string(kind.name) + (isShort ? "/short" : "/long");
            c.group     = "Lines";
            c.operation = Operation::Line;
            c.smooth = kind.smooth, c.lineWidth = kind.width, c.dashed = kind.dashed, c.isShort = isShort;
            c.color   = 0xFFE04010;
            c.repeats = 1000;
            cases.push_back(c);
        }
    }
}

void AddPolygons(std::vector<Case>& cases)
{
    struct Kind
    {
        const char* name;
        bool        smooth, textured;
    };
    struct Outline
    {
        const char* name;
        int         targetWidth, targetHeight, corners;
        double      radius, inner;
    };
    constexpr Kind KINDS[] = {
        {"poly_aliased", false, false}, {"poly_aa", true, false}, {"poly_tex_nearest", false, true}};
    constexpr Outline OUTLINES[] = {
        {"star10_r120", 480, 272, 10, 120, 0.45},    {"star50_r120", 480, 272, 50, 120, 0.7},
        {"star200_r120", 480, 272, 200, 120, .85},   {"circle256_r120", 480, 272, 256, 120, 1},
        {"circle256_r500", 1920, 1080, 256, 500, 1}, {"star10_r10", 480, 272, 10, 10, 0.45}};
    for (const Kind& kind : KINDS)
    {
        for (const Outline& outline : OUTLINES)
        {
            Case c;
            c.name      = std::string(kind.name) + "/" + outline.name;
            c.group     = "Polygons and dots";
            c.operation = Operation::Polygon;
            c.smooth = kind.smooth, c.textured = kind.textured;
            c.targetWidth = outline.targetWidth, c.targetHeight = outline.targetHeight;
            c.corners = outline.corners, c.radius = outline.radius, c.inner = outline.inner;
            c.color   = 0xFFE04010;
            c.repeats = outline.radius < 100 ? 256 : 16;
            if (kind.textured)  // sides that every contender takes: powers of two
            {
                c.sourceWidth  = outline.targetWidth > 1000 ? 2048 : 512;
                c.sourceHeight = outline.targetWidth > 1000 ? 1024 : 256;
            }
            cases.push_back(c);
        }
    }
}

void AddDots(std::vector<Case>& cases)
{
    for (const int radius : {2, 10, 100})
    {
        Case c;
        c.name      = "circle_aa/r" + std::to_string(radius);
        c.group     = "Polygons and dots";
        c.operation = Operation::Dot;
        c.smooth    = true;
        c.radius    = radius;
        c.color     = 0xFFE04010;
        c.repeats   = 256;
        cases.push_back(c);
    }
}

//! Discs on tiles of 64 pixels, of the whole picture where that is smaller: about 45 % of the pixels are opaque, 35 %
//! transparent, the rest a soft edge and a shadow around it.
std::uint32_t IconAlpha(int x, int y, int tile)
{
    const double middle = tile / 2.0, dx = x % tile + 0.5 - middle, dy = y % tile + 0.5 - middle;
    const double distance = std::sqrt(dx * dx + dy * dy), disc = tile * 0.38, shadow = tile * 0.46;
    if (distance < disc) return static_cast<std::uint32_t>(std::min(255.0, (disc - distance) * 128 + 96));
    return distance < shadow ? static_cast<std::uint32_t>(96 * (shadow - distance) / (shadow - disc)) : 0;
}

void DrawSource(Picture& picture, const Case& kind)
{
    Random    random(12345);
    const int tile = std::min({64, picture.width, picture.height});
    for (int y = 0; y < picture.height; ++y)
    {
        for (int x = 0; x < picture.width; ++x)
        {
            const auto red = static_cast<std::uint32_t>(x * 5) & 255, green = static_cast<std::uint32_t>(y * 3) & 255,
                       blue     = static_cast<std::uint32_t>(x * y) & 255;
            std::uint32_t alpha = 255, rgb = red << 16 | green << 8 | blue;
            if (kind.content == Content::Random)
            {
                alpha = random.Bits24() & 255;
                rgb   = random.Bits24();
            }
            else if (kind.content == Content::Icon)
            {
                alpha = IconAlpha(x, y, tile);
            }
            if (kind.operation == Operation::Rle)  // artwork of few colours, which is what this form is for
            {
                alpha = alpha < 8 ? 0 : alpha | 15;
                rgb   = alpha == 0 ? 0 : 0x203040u + 0x101010u * static_cast<std::uint32_t>(y % tile / 8);
            }
            *picture.At(x, y) = alpha << 24 | rgb;
        }
    }
}

void MakeSources(Input& input)
{
    const Case& kind = input.kind;
    input.source     = std::make_unique<Picture>(kind.sourceWidth, kind.sourceHeight, SOURCE_OFFSET);
    DrawSource(*input.source, kind);
    input.premultiplied = std::make_unique<Picture>(kind.sourceWidth, kind.sourceHeight, SOURCE_OFFSET);
    std::transform(input.source->Pixels(), input.source->Pixels() + input.source->Count(),
                   input.premultiplied->Pixels(), Premultiplied);

    const auto height = static_cast<std::size_t>(kind.sourceHeight);
    if (kind.operation == Operation::Convert565 || kind.operation == Operation::Blend565 ||
        kind.operation == Operation::Picture565ByMask)
    {
        const auto pitch = static_cast<std::size_t>(input.Pitch565());
        input.rgb565     = std::make_unique<Buffer>(pitch * height, SOURCE_OFFSET);
        for (int y = 0; y < kind.sourceHeight; ++y)
        {
            auto* row = reinterpret_cast<std::uint16_t*>(input.rgb565->Bytes() + pitch * static_cast<std::size_t>(y));
            for (int x = 0; x < kind.sourceWidth; ++x)
            {
                const std::uint32_t argb = *input.source->At(x, y);
                row[x] = static_cast<std::uint16_t>((argb >> 8 & 0xF800) | (argb >> 5 & 0x07E0) | (argb >> 3 & 0x1F));
            }
        }
    }
    if (kind.operation == Operation::ColorByMask || kind.operation == Operation::PictureByMask ||
        kind.operation == Operation::Picture565ByMask)
    {
        const auto pitch = static_cast<std::size_t>(input.PitchMask());
        input.mask       = std::make_unique<Buffer>(pitch * height, SOURCE_OFFSET);
        for (int y = 0; y < kind.sourceHeight; ++y)
        {
            for (int x = 0; x < kind.sourceWidth; ++x)
            {
                std::uint32_t& argb = *input.source->At(x, y);
                input.mask->Bytes()[pitch * static_cast<std::size_t>(y) + static_cast<std::size_t>(x)] =
                    static_cast<std::uint8_t>(argb >> 24);
                argb |= 0xFF000000;  // the map alone decides: some multiply it with the picture's alpha, others do not
                *input.premultiplied->At(x, y) = argb;
            }
        }
    }
}

void PlaceRectangles(Input& input)
{
    const Case& kind = input.kind;
    Random      random(777);
    for (int i = 0; i < kind.repeats; ++i)
    {
        const double x = random.Whole(kind.targetWidth - kind.width + 1),
                     y = random.Whole(kind.targetHeight - kind.height + 1);
        input.places.push_back({x, y});
        input.areas.push_back(static_cast<double>(kind.width) * kind.height);
    }
}

//! At least `margin` pixels from every side.
void PlaceCenters(Input& input, int margin, double area, std::uint32_t seed)
{
    const Case& kind = input.kind;
    Random      random(seed);
    for (int i = 0; i < kind.repeats; ++i)
    {
        const double x = margin + random.Whole(kind.targetWidth - 2 * margin),
                     y = margin + random.Whole(kind.targetHeight - 2 * margin);
        input.places.push_back({x, y});
        input.areas.push_back(area);
    }
}

void MakeLines(Input& input)
{
    const Case& kind = input.kind;
    Random      random(4242);
    const auto  anywhere = [&]
    {
        const double x = 8 + random.Whole(464);
        return Point{x, 8 + random.Whole(256)};
    };
    for (int i = 0; i < kind.repeats; ++i)
    {
        const Point from = anywhere();
        Point       to   = anywhere();
        if (kind.isShort)  // up to 16 pixels along each axis
        {
            to.x = std::clamp(from.x + random.Whole(33) - 16, 8.0, 471.0);
            to.y = std::clamp(from.y + random.Whole(33) - 16, 8.0, 263.0);
            if (to.x == from.x && to.y == from.y) to.x += from.x < 400 ? 3 : -3;
        }
        const double dx = std::fabs(from.x - to.x), dy = std::fabs(from.y - to.y);
        const double solid = kind.lineWidth > 1 ? std::hypot(dx, dy) * kind.lineWidth : std::max(dx, dy) + 1;
        input.lines.push_back({from, to});
        input.areas.push_back(kind.dashed ? solid / 2 : solid);
    }
}

double AreaOf(const std::vector<Point>& polygon)
{
    double twice = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i)
    {
        const Point &p = polygon[i], &q = polygon[(i + 1) % polygon.size()];
        twice += p.x * q.y - q.x * p.y;
    }
    return std::fabs(twice) / 2;
}

void MakePolygons(Input& input)
{
    const Case& kind    = input.kind;
    const bool  isSmall = kind.radius < 100;
    Random      random(31337);
    for (int i = 0; i < kind.repeats; ++i)
    {
        const double spreadX = isSmall ? kind.targetWidth - 24 : 4, spreadY = isSmall ? kind.targetHeight - 24 : 4;
        const double startX = isSmall ? 12 : kind.targetWidth / 2.0, startY = isSmall ? 12 : kind.targetHeight / 2.0;
        const double x = startX + random.Fraction() * spreadX, y = startY + random.Fraction() * spreadY,
                     turn = random.Fraction() * 2 * PI;
        std::vector<Point> polygon;
        for (int k = 0; k < kind.corners; ++k)
        {
            const double radius = kind.radius * (k % 2 != 0 ? kind.inner : 1), angle = turn + k * 2 * PI / kind.corners;
            polygon.push_back({x + radius * std::cos(angle), y + radius * std::sin(angle)});
        }
        input.places.push_back({x, y});
        input.areas.push_back(AreaOf(polygon));
        input.polygons.push_back(std::move(polygon));
    }
}

}  // namespace

Affine Affine::Inverse() const
{
    const double factor = 1 / (xx * yy - yx * xy);
    Affine       r{yy * factor, -yx * factor, -xy * factor, xx * factor, 0, 0};
    r.x0 = -(x0 * r.xx + y0 * r.xy);
    r.y0 = -(x0 * r.yx + y0 * r.yy);
    return r;
}

bool Case::BesideMemset() const
{
    switch (operation)
    {
    case Operation::FillOpaque:
    case Operation::FillBlend:
    case Operation::Line:
    case Operation::Polygon:
    case Operation::Dot: return true;
    default: return false;
    }
}

std::vector<Case> AllCases()
{
    std::vector<Case> cases;
    AddRectangles(cases);
    AddStretches(cases);
    AddRotations(cases);
    AddLines(cases);
    AddPolygons(cases);
    AddDots(cases);
    return cases;
}

Affine Input::Turned(Point center) const
{
    const double cosine = std::cos(ANGLE * PI / 180), sine = std::sin(ANGLE * PI / 180);
    const double x = kind.sourceWidth / 2.0, y = kind.sourceHeight / 2.0;
    return {cosine, sine, -sine, cosine, center.x - cosine * x + sine * y, center.y - sine * x - cosine * y};
}

Affine Input::TextureFrame() const
{
    const double cosine = std::cos(0.35) * 1.25, sine = std::sin(0.35) * 1.25;
    const double x = kind.sourceWidth / 2.0, y = kind.sourceHeight / 2.0;
    return {cosine,
            sine,
            -sine,
            cosine,
            kind.targetWidth / 2.0 - cosine * x + sine * y,
            kind.targetHeight / 2.0 - sine * x - cosine * y};
}

Input MakeInput(const Case& kind)
{
    Input input;
    input.kind = kind;
    switch (kind.operation)
    {
    case Operation::Line: MakeLines(input); break;
    case Operation::Polygon: MakePolygons(input); break;
    case Operation::Dot:
    {
        const int radius = static_cast<int>(kind.radius);
        PlaceCenters(input, radius + 1, PI * kind.radius * kind.radius, 555);
        break;
    }
    case Operation::Rotate:
        if (kind.repeats > 1)
        {
            PlaceCenters(input, static_cast<int>(kind.width * 0.7) + 2, static_cast<double>(kind.width) * kind.height,
                         99);
        }
        else
        {
            input.places.push_back({kind.targetWidth / 2.0, kind.targetHeight / 2.0});
            input.areas.push_back(static_cast<double>(kind.width) * kind.height);
        }
        break;
    default: PlaceRectangles(input); break;
    }
    if (kind.sourceWidth > 0) MakeSources(input);
    for (const double area : input.areas) input.pixels += area / static_cast<double>(input.areas.size());
    return input;
}

}  // namespace bench
