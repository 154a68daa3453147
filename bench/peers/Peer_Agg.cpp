// Peer_Agg: Anti-Grain Geometry on straight alpha.
#include <agg_conv_dash.h>
#include <agg_conv_stroke.h>
#include <agg_ellipse.h>
#include <agg_image_accessors.h>
#include <agg_path_storage.h>
#include <agg_pixfmt_rgba.h>
#include <agg_rasterizer_outline_aa.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_base.h>
#include <agg_renderer_outline_aa.h>
#include <agg_renderer_primitives.h>
#include <agg_renderer_scanline.h>
#include <agg_rendering_buffer.h>
#include <agg_scanline_bin.h>
#include <agg_scanline_p.h>
#include <agg_scanline_u.h>
#include <agg_span_allocator.h>
#include <agg_span_image_filter_rgba.h>
#include <agg_span_interpolator_linear.h>
#include <agg_trans_affine.h>

#include "Peers.h"

namespace bench
{
namespace
{

using Format = agg::pixfmt_bgra32;
using Base   = agg::renderer_base<Format>;

unsigned Unsigned(int value)
{
    return static_cast<unsigned>(value);
}

agg::rgba8 ColorOf(std::uint32_t argb)
{
    return {Channel(argb, 16), Channel(argb, 8), Channel(argb, 0), Channel(argb, 24)};
}

agg::trans_affine MatrixOf(const Affine& a)
{
    return {a.xx, a.yx, a.xy, a.yy, a.x0, a.y0};
}

struct Stage
{
    std::shared_ptr<Picture>        picture;
    agg::rendering_buffer           buffer, sourceBuffer;
    Format                          format, source;
    Base                            base;
    agg::rasterizer_scanline_aa<>   rasterizer;
    agg::scanline_u8                scanline;
    agg::scanline_p8                packed;
    agg::scanline_bin               binary;
    agg::span_allocator<agg::rgba8> spans;
    agg::rgba8                      color;

    Stage(const Input& input, const std::shared_ptr<Picture>& target)
        : picture(target),
          buffer(target->Bytes(), Unsigned(target->width), Unsigned(target->height), target->Pitch()),
          format(buffer),
          base(format),
          color(ColorOf(input.kind.color))
    {
        if (!input.source) return;
        sourceBuffer.attach(input.source->Bytes(), Unsigned(input.source->width), Unsigned(input.source->height),
                            input.source->Pitch());
        source.attach(sourceBuffer);
    }

    void FillSmooth() { agg::render_scanlines_aa_solid(rasterizer, packed, base, color); }

    void Outline(const std::vector<Point>& polygon)
    {
        rasterizer.reset();
        rasterizer.move_to_d(polygon[0].x, polygon[0].y);
        for (std::size_t i = 1; i < polygon.size(); ++i) rasterizer.line_to_d(polygon[i].x, polygon[i].y);
    }

    //! Fills the outline with the source.
    template <class Accessor>
    void FillFrom(Accessor& accessor, agg::trans_affine back, bool bilinear)
    {
        using Interpolator = agg::span_interpolator_linear<>;
        Interpolator interpolator(back);
        if (bilinear)
        {
            agg::span_image_filter_rgba_bilinear<Accessor, Interpolator> generator(accessor, interpolator);
            agg::render_scanlines_aa(rasterizer, scanline, base, spans, generator);
        }
        else
        {
            agg::span_image_filter_rgba_nn<Accessor, Interpolator> generator(accessor, interpolator);
            agg::render_scanlines_aa(rasterizer, scanline, base, spans, generator);
        }
    }
};
using StagePtr = std::shared_ptr<Stage>;

std::function<void(int)> Lines(const Input& input, const StagePtr& s)
{
    const Case& kind = input.kind;
    if (kind.dashed)
    {
        if (!kind.smooth) return nullptr;
        return Each(
            [=, &input](int i)
            {
                const Segment&    line = input.Line(i);
                agg::path_storage path;
                path.move_to(line.from.x + 0.5, line.from.y + 0.5);
                path.line_to(line.to.x + 0.5, line.to.y + 0.5);
                agg::conv_dash<agg::path_storage> dashes(path);
                dashes.add_dash(DASH, DASH);
                agg::conv_stroke<agg::conv_dash<agg::path_storage>> stroke(dashes);
                stroke.width(input.kind.lineWidth);
                s->rasterizer.reset();
                s->rasterizer.add_path(stroke);
                s->FillSmooth();
            });
    }
    if (!kind.smooth)
    {
        const auto primitives = std::make_shared<agg::renderer_primitives<Base>>(s->base);
        primitives->line_color(s->color);
        return Each(
            [=, &input, keep = s](int i)
            {
                const Segment& line = input.Line(i);
                primitives->line(static_cast<int>(line.from.x) << 8, static_cast<int>(line.from.y) << 8,
                                 static_cast<int>(line.to.x) << 8, static_cast<int>(line.to.y) << 8, true);
            });
    }
    if (kind.lineWidth == 1)
    {
        using Renderer     = agg::renderer_outline_aa<Base>;
        const auto profile = std::make_shared<agg::line_profile_aa>();
        profile->width(1.0);
        const auto renderer = std::make_shared<Renderer>(s->base, *profile);
        renderer->color(s->color);
        const auto rasterizer = std::make_shared<agg::rasterizer_outline_aa<Renderer>>(*renderer);
        return Each(
            [=, &input, keep = s](int i)
            {
                (void)profile, (void)renderer;
                const Segment& line = input.Line(i);
                rasterizer->move_to_d(line.from.x + 0.5, line.from.y + 0.5);
                rasterizer->line_to_d(line.to.x + 0.5, line.to.y + 0.5);
                rasterizer->render(false);
            });
    }
    return Each(
        [=, &input](int i)
        {
            const Segment&    line = input.Line(i);
            agg::path_storage path;
            path.move_to(line.from.x + 0.5, line.from.y + 0.5);
            path.line_to(line.to.x + 0.5, line.to.y + 0.5);
            agg::conv_stroke<agg::path_storage> stroke(path);
            stroke.width(input.kind.lineWidth);
            s->rasterizer.reset();
            s->rasterizer.add_path(stroke);
            s->FillSmooth();
        });
}

std::function<void(int)> Polygons(const Input& input, const StagePtr& s)
{
    if (input.kind.textured)
    {
        return Each(
            [=, &input, back = MatrixOf(input.TextureFrame().Inverse())](int i)
            {
                agg::image_accessor_wrap<Format, agg::wrap_mode_repeat, agg::wrap_mode_repeat> texture(s->source);
                s->Outline(input.polygons[input.PolygonIndex(i)]);
                s->FillFrom(texture, back, false);
            });
    }
    return Each(
        [=, &input](int i)
        {
            s->Outline(input.polygons[input.PolygonIndex(i)]);
            if (input.kind.smooth)
            {
                s->FillSmooth();
            }
            else
            {
                agg::render_scanlines_bin_solid(s->rasterizer, s->binary, s->base, s->color);
            }
        });
}

std::function<void(int)> Draws(const Input& input, const StagePtr& s)
{
    const Case& kind  = input.kind;
    const int   width = kind.width, height = kind.height;
    switch (kind.operation)
    {
    case Operation::FillOpaque:
        return EachPlace(input, [=](int x, int y) { s->base.copy_bar(x, y, x + width - 1, y + height - 1, s->color); });
    case Operation::FillBlend:
        return EachPlace(input, [=](int x, int y)
                         { s->base.blend_bar(x, y, x + width - 1, y + height - 1, s->color, agg::cover_full); });
    case Operation::Copy:
        return EachPlace(input, [=](int x, int y) { s->base.copy_from(s->sourceBuffer, nullptr, x, y); });
    case Operation::Over:
        return EachPlace(input, [=](int x, int y) { s->base.blend_from(s->source, nullptr, x, y, agg::cover_full); });
    case Operation::OverAlpha:
        return EachPlace(input, [=](int x, int y) { s->base.blend_from(s->source, nullptr, x, y, GLOBAL_ALPHA); });
    case Operation::ColorByMask:
        return EachPlace(input,
                         [=, mask = input.mask->Bytes(), pitch = input.PitchMask()](int x, int y)
                         {
                             for (int row = 0; row < height; ++row)
                             {
                                 s->base.blend_solid_hspan(x, y + row, width, s->color, mask + row * pitch);
                             }
                         });
    case Operation::Stretch:
        return EachPlace(input,
                         [=, &input](int x, int y)
                         {
                             agg::trans_affine back = agg::trans_affine_translation(-x, -y);
                             back *= agg::trans_affine_scaling(double{1} * input.kind.sourceWidth / width,
                                                               double{1} * input.kind.sourceHeight / height);
                             agg::image_accessor_clone<Format> accessor(s->source);
                             const double left = x, top = y, right = x + width, bottom = y + height;
                             s->Outline({{left, top}, {right, top}, {right, bottom}, {left, bottom}});
                             s->FillFrom(accessor, back, input.kind.bilinear);
                         });
    case Operation::Rotate:
        return Each(
            [=, &input](int i)
            {
                const Affine                     forward = input.Turned(input.Place(i));
                const double                     right = input.kind.sourceWidth, bottom = input.kind.sourceHeight;
                agg::image_accessor_clip<Format> accessor(s->source, agg::rgba8(0, 0, 0, 0));
                s->Outline({forward.Map({0, 0}), forward.Map({right, 0}), forward.Map({right, bottom}),
                            forward.Map({0, bottom})});
                s->FillFrom(accessor, MatrixOf(forward.Inverse()), input.kind.bilinear);
            });
    case Operation::Line: return Lines(input, s);
    case Operation::Polygon: return Polygons(input, s);
    case Operation::Dot:
        return EachPlace(input,
                         [=, radius = kind.radius](int x, int y)
                         {
                             agg::ellipse ellipse(x, y, radius, radius);
                             s->rasterizer.reset();
                             s->rasterizer.add_path(ellipse);
                             s->FillSmooth();
                         });
    default: return nullptr;
    }
}

class Agg : public Contender
{
public:
    std::string Name() const override { return "AGG"; }
    std::string Version() const override { return KANVO_PEER_AGG; }

    Job Prepare(const Input& input) override
    {
        Job job;
        job.target = MakeTarget(input);
        job.run    = Draws(input, std::make_shared<Stage>(input, job.target));
        if (input.kind.operation == Operation::Stretch && !input.kind.over) job.note = "blends instead of storing";
        return job;
    }
};

}  // namespace

std::unique_ptr<Contender> MakeAgg()
{
    return std::make_unique<Agg>();
}

}  // namespace bench
