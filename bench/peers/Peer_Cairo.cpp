// Peer_Cairo: cairo on an image surface, premultiplied; twice, as its fast anti-aliasing is another algorithm.
#include <cairo.h>

#include "Peers.h"

namespace bench
{
namespace
{

constexpr double PI = 3.14159265358979323846;

using SurfacePtr = std::shared_ptr<cairo_surface_t>;

SurfacePtr MakeSurface(cairo_format_t format, std::uint8_t* pixels, int width, int height, int pitch)
{
    return {cairo_image_surface_create_for_data(pixels, format, width, height, pitch),
            [](cairo_surface_t* surface) { cairo_surface_destroy(surface); }};
}

SurfacePtr MakeSource(const Input& input)
{
    const Case& kind = input.kind;
    if (input.rgb565)
    {
        return MakeSurface(CAIRO_FORMAT_RGB16_565, input.rgb565->Bytes(), kind.sourceWidth, kind.sourceHeight,
                           input.Pitch565());
    }
    return MakeSurface(CAIRO_FORMAT_ARGB32, input.premultiplied->Bytes(), kind.sourceWidth, kind.sourceHeight,
                       input.premultiplied->Pitch());
}

SurfacePtr MakeMask(const Input& input)
{
    return MakeSurface(CAIRO_FORMAT_A8, input.mask->Bytes(), input.kind.sourceWidth, input.kind.sourceHeight,
                       input.PitchMask());
}

cairo_matrix_t Matrix(const Affine& a)
{
    return {a.xx, a.yx, a.xy, a.yy, a.x0, a.y0};
}

void SetColor(cairo_t* cairo, std::uint32_t argb)
{
    cairo_set_source_rgba(cairo, Channel(argb, 16) / 255.0, Channel(argb, 8) / 255.0, Channel(argb, 0) / 255.0,
                          Channel(argb, 24) / 255.0);
}

void SetFilter(cairo_t* cairo, bool bilinear)
{
    cairo_pattern_set_filter(cairo_get_source(cairo), bilinear ? CAIRO_FILTER_BILINEAR : CAIRO_FILTER_NEAREST);
}

class Cairo : public Contender
{
public:
    Cairo(const char* name, cairo_antialias_t quality) : m_name(name), m_quality(quality) {}

    std::string Name() const override { return m_name; }
    std::string Version() const override { return cairo_version_string(); }

    Job Prepare(const Input& input) override
    {
        const Case& kind = input.kind;
        if (m_quality == CAIRO_ANTIALIAS_FAST && !(kind.IsShape() && kind.smooth)) return {};
        const auto target = MakeTarget(input);
        const auto surface =
            MakeSurface(CAIRO_FORMAT_ARGB32, target->Bytes(), target->width, target->height, target->Pitch());
        const std::shared_ptr<cairo_t> cairo(cairo_create(surface.get()), [](cairo_t* c) { cairo_destroy(c); });
        cairo_set_antialias(cairo.get(), kind.smooth ? m_quality : CAIRO_ANTIALIAS_NONE);
        if (!kind.IsShape()) cairo_set_antialias(cairo.get(), CAIRO_ANTIALIAS_DEFAULT);

        Job job;
        job.target = target;
        job.run    = kind.IsShape() ? Shapes(input, cairo) : Rectangles(input, cairo);
        if (job.run) job.run = [run = job.run, target, surface](int count) { run(count); };
        return job;
    }

private:
    using Context = std::shared_ptr<cairo_t>;

    static std::function<void(int)> Rectangles(const Input& input, const Context& cairo)
    {
        const Case& kind  = input.kind;
        const int   width = kind.width, height = kind.height;
        cairo_t*    c      = cairo.get();
        const bool  stores = kind.operation == Operation::Copy || kind.operation == Operation::Convert565 ||
                            (kind.operation == Operation::Stretch && !kind.over);
        cairo_set_operator(c, stores ? CAIRO_OPERATOR_SOURCE : CAIRO_OPERATOR_OVER);
        switch (kind.operation)
        {
        case Operation::FillOpaque:
        case Operation::FillBlend:
            SetColor(c, kind.color);
            return EachPlace(input,
                             [=, keep = cairo](int x, int y)
                             {
                                 cairo_rectangle(c, x, y, width, height);
                                 cairo_fill(c);
                             });
        case Operation::Copy:
        case Operation::Convert565:
        case Operation::Over:
            return EachPlace(input,
                             [=, keep = cairo, source = MakeSource(input)](int x, int y)
                             {
                                 cairo_set_source_surface(c, source.get(), x, y);
                                 cairo_rectangle(c, x, y, width, height);
                                 cairo_fill(c);
                             });
        case Operation::OverAlpha:
        case Operation::Blend565:
            return EachPlace(input,
                             [=, keep = cairo, source = MakeSource(input)](int x, int y)
                             {
                                 cairo_set_source_surface(c, source.get(), x, y);
                                 cairo_save(c);
                                 cairo_rectangle(c, x, y, width, height);
                                 cairo_clip(c);
                                 cairo_paint_with_alpha(c, GLOBAL_ALPHA / 255.0);
                                 cairo_restore(c);
                             });
        case Operation::ColorByMask:
            SetColor(c, kind.color);
            return EachPlace(input, [=, keep = cairo, mask = MakeMask(input)](int x, int y)
                             { cairo_mask_surface(c, mask.get(), x, y); });
        case Operation::PictureByMask:
        case Operation::Picture565ByMask:
            return EachPlace(input,
                             [=, keep = cairo, source = MakeSource(input), mask = MakeMask(input)](int x, int y)
                             {
                                 cairo_set_source_surface(c, source.get(), x, y);
                                 cairo_mask_surface(c, mask.get(), x, y);
                             });
        case Operation::Stretch:
            return EachPlace(input,
                             [=, keep = cairo, source = MakeSource(input), bilinear = kind.bilinear,
                              scaleX = double{1} * width / kind.sourceWidth,
                              scaleY = double{1} * height / kind.sourceHeight](int x, int y)
                             {
                                 cairo_identity_matrix(c);
                                 cairo_translate(c, x, y);
                                 cairo_scale(c, scaleX, scaleY);
                                 cairo_set_source_surface(c, source.get(), 0, 0);
                                 SetFilter(c, bilinear);
                                 cairo_pattern_set_extend(cairo_get_source(c), CAIRO_EXTEND_PAD);
                                 cairo_identity_matrix(c);
                                 cairo_rectangle(c, x, y, width, height);
                                 cairo_fill(c);
                             });
        case Operation::Rotate:
            return Each(
                [=, &input, keep = cairo, source = MakeSource(input)](int i)
                {
                    const cairo_matrix_t matrix = Matrix(input.Turned(input.Place(i)));
                    cairo_set_matrix(c, &matrix);
                    cairo_set_source_surface(c, source.get(), 0, 0);
                    SetFilter(c, input.kind.bilinear);
                    cairo_paint(c);
                });
        default: return nullptr;
        }
    }

    static std::function<void(int)> Shapes(const Input& input, const Context& cairo)
    {
        const Case& kind = input.kind;
        cairo_t*    c    = cairo.get();
        SetColor(c, kind.color);
        if (kind.operation == Operation::Line)
        {
            cairo_set_line_width(c, kind.lineWidth);
            cairo_set_line_cap(c, CAIRO_LINE_CAP_BUTT);
            const double dashes[] = {DASH, DASH};
            if (kind.dashed) cairo_set_dash(c, dashes, 2, 0);
            return Each(
                [=, &input, keep = cairo](int i)
                {
                    const Segment& line = input.Line(i);
                    cairo_move_to(c, line.from.x + 0.5, line.from.y + 0.5);
                    cairo_line_to(c, line.to.x + 0.5, line.to.y + 0.5);
                    cairo_stroke(c);
                });
        }
        if (kind.operation == Operation::Dot)
        {
            return EachPlace(input,
                             [=, keep = cairo, radius = kind.radius](int x, int y)
                             {
                                 cairo_arc(c, x, y, radius, 0, 2 * PI);
                                 cairo_fill(c);
                             });
        }
        SurfacePtr texture;
        if (kind.textured)
        {
            texture = MakeSource(input);
            cairo_set_source_surface(c, texture.get(), 0, 0);
            const cairo_matrix_t matrix = Matrix(input.TextureFrame().Inverse());
            cairo_pattern_set_matrix(cairo_get_source(c), &matrix);
            cairo_pattern_set_extend(cairo_get_source(c), CAIRO_EXTEND_REPEAT);
            SetFilter(c, false);
        }
        return Each(
            [=, &input, keep = cairo](int i)
            {
                (void)texture;
                for (const Point& p : input.polygons[input.PolygonIndex(i)]) cairo_line_to(c, p.x, p.y);
                cairo_fill(c);
            });
    }

    const char*       m_name;
    cairo_antialias_t m_quality;
};

}  // namespace

std::unique_ptr<Contender> MakeCairo()
{
    return std::make_unique<Cairo>("cairo", CAIRO_ANTIALIAS_DEFAULT);
}

std::unique_ptr<Contender> MakeCairoFast()
{
    return std::make_unique<Cairo>("cairo-fast", CAIRO_ANTIALIAS_FAST);
}

}  // namespace bench
