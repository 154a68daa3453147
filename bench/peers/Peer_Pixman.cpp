// Peer_Pixman: pixman, premultiplied. Rectangles only.
#include <pixman.h>

#include "Peer_Box.h"
#include "Peers.h"

namespace bench
{
namespace
{

using Image = std::shared_ptr<pixman_image_t>;

Image Shared(pixman_image_t* image)
{
    return {image, [](pixman_image_t* i) { pixman_image_unref(i); }};
}

Image MakeImage(pixman_format_code_t format, int width, int height, void* pixels, int pitch)
{
    return Shared(pixman_image_create_bits_no_clear(format, width, height, static_cast<std::uint32_t*>(pixels), pitch));
}

Image MakeSolid(std::uint32_t argb)
{
    const std::uint32_t  word = Premultiplied(argb);
    const auto           wide = [=](int shift) { return static_cast<std::uint16_t>(Channel(word, shift) * 257); };
    const pixman_color_t color{wide(16), wide(8), wide(0), wide(24)};
    return Shared(pixman_image_create_solid_fill(&color));
}

Image MakeSource(const Input& input)
{
    const Case& kind = input.kind;
    if (input.rgb565)
    {
        return MakeImage(PIXMAN_r5g6b5, kind.sourceWidth, kind.sourceHeight, input.rgb565->Bytes(), input.Pitch565());
    }
    return MakeImage(PIXMAN_a8r8g8b8, kind.sourceWidth, kind.sourceHeight, input.premultiplied->Pixels(),
                     input.premultiplied->Pitch());
}

Image MakeMask(const Input& input)
{
    return MakeImage(PIXMAN_a8, input.kind.sourceWidth, input.kind.sourceHeight, input.mask->Bytes(),
                     input.PitchMask());
}

void SetFilter(const Image& image, bool bilinear)
{
    pixman_image_set_filter(image.get(), bilinear ? PIXMAN_FILTER_BILINEAR : PIXMAN_FILTER_NEAREST, nullptr, 0);
}

class Pixman : public Contender
{
public:
    std::string Name() const override { return "pixman"; }
    std::string Version() const override { return pixman_version_string(); }

    Job Prepare(const Input& input) override
    {
        const Case& kind   = input.kind;
        const auto  target = MakeTarget(input);
        Job         job;
        job.target       = target;
        const int  width = kind.width, height = kind.height;
        const auto to = MakeImage(PIXMAN_a8r8g8b8, target->width, target->height, target->Pixels(), target->Pitch());

        const auto composite = [&, to, target](pixman_op_t operation, const Image& source, const Image& mask = nullptr)
        {
            job.run = EachPlace(input,
                                [=](int x, int y) {
                                    pixman_image_composite32(operation, source.get(), mask.get(), to.get(), 0, 0, 0, 0,
                                                             x, y, width, height);
                                });
        };
        const std::uint32_t globalAlpha = std::uint32_t{GLOBAL_ALPHA} << 24;
        switch (kind.operation)
        {
        case Operation::FillOpaque:
            job.run = EachPlace(input, [=, color = kind.color](int x, int y)
                                { pixman_fill(target->Pixels(), target->width, 32, x, y, width, height, color); });
            break;
        case Operation::FillBlend: composite(PIXMAN_OP_OVER, MakeSolid(kind.color)); break;
        case Operation::Copy:
        case Operation::Convert565: composite(PIXMAN_OP_SRC, MakeSource(input)); break;
        case Operation::Over: composite(PIXMAN_OP_OVER, MakeSource(input)); break;
        case Operation::OverAlpha:
        case Operation::Blend565: composite(PIXMAN_OP_OVER, MakeSource(input), MakeSolid(globalAlpha)); break;
        case Operation::ColorByMask: composite(PIXMAN_OP_OVER, MakeSolid(kind.color), MakeMask(input)); break;
        case Operation::PictureByMask:
        case Operation::Picture565ByMask: composite(PIXMAN_OP_OVER, MakeSource(input), MakeMask(input)); break;
        case Operation::Stretch:
        {
            const Image        source = MakeSource(input);
            pixman_transform_t scale;
            pixman_transform_init_scale(&scale, pixman_double_to_fixed(double{1} * kind.sourceWidth / width),
                                        pixman_double_to_fixed(double{1} * kind.sourceHeight / height));
            pixman_image_set_transform(source.get(), &scale);
            pixman_image_set_repeat(source.get(), PIXMAN_REPEAT_PAD);
            SetFilter(source, kind.bilinear);
            composite(kind.over ? PIXMAN_OP_OVER : PIXMAN_OP_SRC, source);
            break;
        }
        case Operation::Rotate:
        {
            const Image source = MakeSource(input);
            SetFilter(source, kind.bilinear);
            job.run = Each(
                [=, &input](int i)
                {
                    const Affine             forward = input.Turned(input.Place(i)), back = forward.Inverse();
                    const Box                box       = BoxOf(input, forward);
                    const pixman_transform_t transform = {
                        {{pixman_double_to_fixed(back.xx), pixman_double_to_fixed(back.xy),
                          pixman_double_to_fixed(back.x0)},
                         {pixman_double_to_fixed(back.yx), pixman_double_to_fixed(back.yy),
                          pixman_double_to_fixed(back.y0)},
                         {0, 0, pixman_fixed_1}}};
                    pixman_image_set_transform(source.get(), &transform);
                    pixman_image_composite32(PIXMAN_OP_OVER, source.get(), nullptr, to.get(), box.left, box.top, 0, 0,
                                             box.left, box.top, box.Width(), box.Height());
                    (void)target;
                });
            break;
        }
        default: return {};
        }
        return job;
    }
};

}  // namespace

std::unique_ptr<Contender> MakePixman()
{
    return std::make_unique<Pixman>();
}

}  // namespace bench
