// Peer_Sdl2: the blits of SDL2's surfaces, straight alpha, and its software renderer; with SDL2_gfx for its shapes.
#include <SDL.h>
#ifdef KANVO_PEER_SDL2_GFX
#include <SDL2_gfxPrimitives.h>
#endif

#include <cmath>

#include "Peers.h"

namespace bench
{
namespace
{

struct Surface
{
    SDL_Surface* sdl;

    Surface(std::uint32_t format, void* pixels, int width, int height, int depth, int pitch)
        : sdl(SDL_CreateRGBSurfaceWithFormatFrom(pixels, width, height, depth, pitch, format))
    {
    }
    ~Surface() { SDL_FreeSurface(sdl); }
    Surface(const Surface&)            = delete;
    Surface& operator=(const Surface&) = delete;
};

struct Renderer
{
    SDL_Renderer* sdl;
    SDL_Texture*  texture = nullptr;

    Renderer(SDL_Surface* target, std::uint32_t color) : sdl(SDL_CreateSoftwareRenderer(target))
    {
        SDL_SetRenderDrawBlendMode(sdl, SDL_BLENDMODE_BLEND);
        SDL_SetRenderDrawColor(sdl, Byte(color, 16), Byte(color, 8), Byte(color, 0), Byte(color, 24));
    }
    ~Renderer()
    {
        if (texture != nullptr) SDL_DestroyTexture(texture);
        SDL_DestroyRenderer(sdl);
    }
    Renderer(const Renderer&)            = delete;
    Renderer& operator=(const Renderer&) = delete;

    void SetTexture(const Picture& picture, bool bilinear)
    {
        SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, bilinear ? "1" : "0");
        texture =
            SDL_CreateTexture(sdl, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STATIC, picture.width, picture.height);
        SDL_UpdateTexture(texture, nullptr, picture.Pixels(), picture.Pitch());
        SDL_SetTextureBlendMode(texture, SDL_BLENDMODE_BLEND);
    }

    static std::uint8_t Byte(std::uint32_t argb, int shift) { return static_cast<std::uint8_t>(Channel(argb, shift)); }
};

struct Stage
{
    std::shared_ptr<Picture>  picture;
    Surface                   target;
    std::unique_ptr<Surface>  source;
    std::unique_ptr<Picture>  white;  //!< what a mask becomes: alpha of a white picture
    std::unique_ptr<Renderer> renderer;

    explicit Stage(const std::shared_ptr<Picture>& p)
        : picture(p),
          target(SDL_PIXELFORMAT_ARGB8888, p->Pixels(), p->width, p->height, 32, p->Pitch())
    {
    }
};
using StagePtr = std::shared_ptr<Stage>;

std::unique_ptr<Surface> MakeSource(const Input& input)
{
    const Case& kind = input.kind;
    if (input.rgb565)
    {
        return std::make_unique<Surface>(SDL_PIXELFORMAT_RGB565, input.rgb565->Bytes(), kind.sourceWidth,
                                         kind.sourceHeight, 16, input.Pitch565());
    }
    return std::make_unique<Surface>(SDL_PIXELFORMAT_ARGB8888, input.source->Pixels(), kind.sourceWidth,
                                     kind.sourceHeight, 32, input.source->Pitch());
}

SDL_Rect Rect(int x, int y, int width, int height)
{
    return {x, y, width, height};
}

//! The renderer keeps commands until it is flushed: so after every few operations, and at the end.
template <class Draw>
std::function<void(int)> EachFlushed(const StagePtr& stage, Draw draw)
{
    return [=](int count)
    {
        for (int i = 0; i < count; ++i)
        {
            draw(i);
            if (i % 64 == 63) SDL_RenderFlush(stage->renderer->sdl);
        }
        SDL_RenderFlush(stage->renderer->sdl);
    };
}

std::function<void(int)> Blits(const Input& input, const StagePtr& stage)
{
    return EachPlace(input,
                     [=, width = input.kind.width, height = input.kind.height](int x, int y)
                     {
                         SDL_Rect to = Rect(x, y, width, height);
                         SDL_BlitSurface(stage->source->sdl, nullptr, stage->target.sdl, &to);
                     });
}

void PrepareRectangles(const Input& input, const StagePtr& stage, Job& job)
{
    const Case& kind  = input.kind;
    const int   width = kind.width, height = kind.height;
    switch (kind.operation)
    {
    case Operation::FillOpaque:
        job.run = EachPlace(input,
                            [=, color = kind.color](int x, int y)
                            {
                                const SDL_Rect to = Rect(x, y, width, height);
                                SDL_FillRect(stage->target.sdl, &to, color);
                            });
        break;
    case Operation::FillBlend:
    {
        stage->renderer = std::make_unique<Renderer>(stage->target.sdl, kind.color);
        const auto draw = [=, &input](int i)
        {
            const Point&   place = input.Place(i);
            const SDL_Rect to    = Rect(static_cast<int>(place.x), static_cast<int>(place.y), width, height);
            SDL_RenderFillRect(stage->renderer->sdl, &to);
        };
        job.run = EachFlushed(stage, draw);
        break;
    }
    case Operation::Copy:
    case Operation::Convert565:
    case Operation::Over:
    case Operation::OverAlpha:
    case Operation::Blend565:
    case Operation::Rle:
    {
        const bool stores = kind.operation == Operation::Copy || kind.operation == Operation::Convert565;
        stage->source     = MakeSource(input);
        SDL_SetSurfaceBlendMode(stage->source->sdl, stores ? SDL_BLENDMODE_NONE : SDL_BLENDMODE_BLEND);
        if (kind.operation == Operation::OverAlpha || kind.operation == Operation::Blend565)
        {
            SDL_SetSurfaceAlphaMod(stage->source->sdl, GLOBAL_ALPHA);
        }
        if (kind.operation == Operation::Rle) SDL_SetSurfaceRLE(stage->source->sdl, 1);
        job.run = Blits(input, stage);
        break;
    }
    case Operation::ColorByMask:
    {
        stage->white = std::make_unique<Picture>(kind.sourceWidth, kind.sourceHeight, SOURCE_OFFSET);
        for (int y = 0; y < kind.sourceHeight; ++y)
        {
            for (int x = 0; x < kind.sourceWidth; ++x)
            {
                *stage->white->At(x, y) =
                    std::uint32_t{input.mask->Bytes()[y * input.PitchMask() + x]} << 24 | 0xFFFFFF;
            }
        }
        stage->source = std::make_unique<Surface>(SDL_PIXELFORMAT_ARGB8888, stage->white->Pixels(), kind.sourceWidth,
                                                  kind.sourceHeight, 32, stage->white->Pitch());
        SDL_SetSurfaceBlendMode(stage->source->sdl, SDL_BLENDMODE_BLEND);
        SDL_SetSurfaceColorMod(stage->source->sdl, Renderer::Byte(kind.color, 16), Renderer::Byte(kind.color, 8),
                               Renderer::Byte(kind.color, 0));
        job.note = "as a white ARGB32 picture";
        job.run  = Blits(input, stage);
        break;
    }
    case Operation::Stretch:
        if (kind.bilinear && kind.over) break;
        stage->source = MakeSource(input);
        SDL_SetSurfaceBlendMode(stage->source->sdl, kind.over ? SDL_BLENDMODE_BLEND : SDL_BLENDMODE_NONE);
        job.run = EachPlace(input,
                            [=, bilinear = kind.bilinear](int x, int y)
                            {
                                SDL_Rect to = Rect(x, y, width, height);
                                if (bilinear)
                                {
                                    SDL_SoftStretchLinear(stage->source->sdl, nullptr, stage->target.sdl, &to);
                                }
                                else
                                {
                                    SDL_BlitScaled(stage->source->sdl, nullptr, stage->target.sdl, &to);
                                }
                            });
        break;
    case Operation::Rotate:
    {
        stage->renderer = std::make_unique<Renderer>(stage->target.sdl, kind.color);
        stage->renderer->SetTexture(*input.source, kind.bilinear);
        const auto draw = [=, &input](int i)
        {
            const Point&   place = input.Place(i);
            const SDL_Rect to =
                Rect(static_cast<int>(place.x - width / 2.0), static_cast<int>(place.y - height / 2.0), width, height);
            SDL_RenderCopyEx(stage->renderer->sdl, stage->renderer->texture, nullptr, &to, ANGLE, nullptr,
                             SDL_FLIP_NONE);
        };
        job.run = EachFlushed(stage, draw);
        break;
    }
    default: break;
    }
}

void PrepareLines(const Input& input, const StagePtr& stage, Job& job)
{
    const Case& kind = input.kind;
    if (kind.dashed) return;
    if (!kind.smooth)
    {
        const auto draw = [=, &input](int i)
        {
            const Segment& line = input.Line(i);
            SDL_RenderDrawLine(stage->renderer->sdl, static_cast<int>(line.from.x), static_cast<int>(line.from.y),
                               static_cast<int>(line.to.x), static_cast<int>(line.to.y));
        };
        job.run = EachFlushed(stage, draw);
        return;
    }
#ifdef KANVO_PEER_SDL2_GFX
    const std::uint8_t red = Renderer::Byte(kind.color, 16), green = Renderer::Byte(kind.color, 8),
                       blue = Renderer::Byte(kind.color, 0);
    const auto width        = static_cast<std::uint8_t>(kind.lineWidth);
    job.note                = width == 1 ? "SDL2_gfx" : "SDL2_gfx, not anti-aliased";
    job.isLess              = width != 1;
    const auto draw         = [=, &input](int i)
    {
        const Segment& line = input.Line(i);
        const auto     x1 = static_cast<Sint16>(line.from.x), y1 = static_cast<Sint16>(line.from.y);
        const auto     x2 = static_cast<Sint16>(line.to.x), y2 = static_cast<Sint16>(line.to.y);
        if (width == 1)
        {
            aalineRGBA(stage->renderer->sdl, x1, y1, x2, y2, red, green, blue, 255);
        }
        else
        {
            thickLineRGBA(stage->renderer->sdl, x1, y1, x2, y2, width, red, green, blue, 255);
        }
    };
    job.run = EachFlushed(stage, draw);
#endif
}

//! A fan of triangles about the middle, whose texture does not repeat but is stretched out at its border.
void PrepareTextured(const Input& input, const StagePtr& stage, Job& job)
{
    struct Fan
    {
        std::vector<SDL_Vertex> vertices;
        std::vector<int>        indices;
    };
    const Affine back   = input.TextureFrame().Inverse();
    const auto   vertex = [&](const Point& p)
    {
        const Point texel = back.Map(p);
        const auto part = [](double value, int size) { return static_cast<float>(std::clamp(value / size, 0.0, 1.0)); };
        SDL_Vertex v;
        v.position  = {static_cast<float>(p.x), static_cast<float>(p.y)};
        v.color     = {255, 255, 255, 255};
        v.tex_coord = {part(texel.x, input.kind.sourceWidth), part(texel.y, input.kind.sourceHeight)};
        return v;
    };
    std::vector<Fan> fans(input.polygons.size());
    for (std::size_t i = 0; i < fans.size(); ++i)
    {
        const int corners = static_cast<int>(input.polygons[i].size());
        fans[i].vertices.push_back(vertex(input.places[i]));
        for (const Point& p : input.polygons[i]) fans[i].vertices.push_back(vertex(p));
        for (int k = 0; k < corners; ++k)
            fans[i].indices.insert(fans[i].indices.end(), {0, 1 + k, 1 + (k + 1) % corners});
    }
    stage->renderer->SetTexture(*input.source, false);
    job.note        = "a fan of triangles; the texture does not repeat";
    const auto draw = [=, &input](int i)
    {
        const Fan& fan = fans[input.PolygonIndex(i)];
        SDL_RenderGeometry(stage->renderer->sdl, stage->renderer->texture, fan.vertices.data(),
                           static_cast<int>(fan.vertices.size()), fan.indices.data(),
                           static_cast<int>(fan.indices.size()));
    };
    job.run = EachFlushed(stage, draw);
}

void PreparePolygons(const Input& input, const StagePtr& stage, Job& job)
{
    const Case& kind = input.kind;
    if (kind.textured)
    {
        PrepareTextured(input, stage, job);
        return;
    }
#ifdef KANVO_PEER_SDL2_GFX
    if (kind.smooth) return;
    struct Outline
    {
        std::vector<Sint16> x, y;
    };
    std::vector<Outline> outlines(input.polygons.size());
    for (std::size_t i = 0; i < outlines.size(); ++i)
    {
        for (const Point& p : input.polygons[i])
        {
            outlines[i].x.push_back(static_cast<Sint16>(std::lround(p.x)));
            outlines[i].y.push_back(static_cast<Sint16>(std::lround(p.y)));
        }
    }
    job.note        = "SDL2_gfx";
    const auto draw = [=, &input](int i)
    {
        const Outline& outline = outlines[input.PolygonIndex(i)];
        filledPolygonRGBA(stage->renderer->sdl, outline.x.data(), outline.y.data(), static_cast<int>(outline.x.size()),
                          Renderer::Byte(kind.color, 16), Renderer::Byte(kind.color, 8), Renderer::Byte(kind.color, 0),
                          255);
    };
    job.run = EachFlushed(stage, draw);
#endif
}

void PrepareDots([[maybe_unused]] const Input& input, [[maybe_unused]] const StagePtr& stage, [[maybe_unused]] Job& job)
{
#ifdef KANVO_PEER_SDL2_GFX
    const std::uint32_t color = input.kind.color;
    job.note                  = "SDL2_gfx, not anti-aliased";
    job.isLess                = true;
    const auto draw           = [=, &input](int i)
    {
        const Point& place = input.Place(i);
        filledCircleRGBA(stage->renderer->sdl, static_cast<Sint16>(place.x), static_cast<Sint16>(place.y),
                         static_cast<Sint16>(input.kind.radius), Renderer::Byte(color, 16), Renderer::Byte(color, 8),
                         Renderer::Byte(color, 0), 255);
    };
    job.run = EachFlushed(stage, draw);
#endif
}

class Sdl2 : public Contender
{
public:
    Sdl2()
    {
        SDL_SetHint(SDL_HINT_VIDEODRIVER, "dummy");
        SDL_SetHint(SDL_HINT_RENDER_BATCHING, "1");
        SDL_Init(0);
    }
    ~Sdl2() override { SDL_Quit(); }

    std::string Name() const override { return "SDL2"; }
    std::string Version() const override
    {
        SDL_version version;
        SDL_GetVersion(&version);
        return std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
               std::to_string(version.patch);
    }

    Job Prepare(const Input& input) override
    {
        Job job;
        job.target       = MakeTarget(input);
        const auto stage = std::make_shared<Stage>(job.target);
        if (input.kind.IsShape()) stage->renderer = std::make_unique<Renderer>(stage->target.sdl, input.kind.color);
        switch (input.kind.operation)
        {
        case Operation::Line: PrepareLines(input, stage, job); break;
        case Operation::Polygon: PreparePolygons(input, stage, job); break;
        case Operation::Dot: PrepareDots(input, stage, job); break;
        default: PrepareRectangles(input, stage, job); break;
        }
        return job;
    }
};

}  // namespace

std::unique_ptr<Contender> MakeSdl2()
{
    return std::make_unique<Sdl2>();
}

}  // namespace bench
