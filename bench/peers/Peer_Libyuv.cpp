// Peer_Libyuv: libyuv, premultiplied. The rectangles that video needs.
#include <libyuv.h>

#include "Peers.h"

namespace bench
{
namespace
{

class Libyuv : public Contender
{
public:
    std::string Name() const override { return "libyuv"; }
    std::string Version() const override { return std::to_string(LIBYUV_VERSION); }

    Job Prepare(const Input& input) override
    {
        const Case& kind   = input.kind;
        const auto  target = MakeTarget(input);
        const int   width = kind.width, height = kind.height, pitch = target->Pitch();

        const std::uint8_t* from      = input.premultiplied ? input.premultiplied->Bytes() : nullptr;
        const int           fromPitch = kind.sourceWidth * 4;
        const auto          to = [target](int x, int y) { return reinterpret_cast<std::uint8_t*>(target->At(x, y)); };

        Job job;
        job.target = target;
        switch (kind.operation)
        {
        case Operation::FillOpaque:
            job.run = EachPlace(input, [=, color = kind.color](int x, int y)
                                { libyuv::ARGBRect(target->Bytes(), pitch, x, y, width, height, color); });
            break;
        case Operation::Copy:
            job.run = EachPlace(input, [=](int x, int y)
                                { libyuv::ARGBCopy(from, fromPitch, to(x, y), pitch, width, height); });
            break;
        case Operation::Over:
            job.note = "makes the target opaque";
            job.run =
                EachPlace(input, [=](int x, int y)
                          { libyuv::ARGBBlend(from, fromPitch, to(x, y), pitch, to(x, y), pitch, width, height); });
            break;
        case Operation::Convert565:
            job.run = EachPlace(input, [=, from565 = input.rgb565->Bytes(), pitch565 = input.Pitch565()](int x, int y)
                                { libyuv::RGB565ToARGB(from565, pitch565, to(x, y), pitch, width, height); });
            break;
        case Operation::Stretch:
        {
            if (kind.over) return {};
            const libyuv::FilterMode filter    = kind.bilinear ? libyuv::kFilterBilinear : libyuv::kFilterNone;
            const int                fromWidth = kind.sourceWidth, fromHeight = kind.sourceHeight;
            const auto               scale = [=](int x, int y)
            { libyuv::ARGBScale(from, fromPitch, fromWidth, fromHeight, to(x, y), pitch, width, height, filter); };
            job.run = EachPlace(input, scale);
            break;
        }
        default: return {};
        }
        return job;
    }
};

}  // namespace

std::unique_ptr<Contender> MakeLibyuv()
{
    return std::make_unique<Libyuv>();
}

}  // namespace bench
