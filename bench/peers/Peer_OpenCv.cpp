// Peer_OpenCv: OpenCV's imgproc. It copies, converts, scales and draws shapes; it does not blend.
#include <opencv2/imgproc.hpp>

#include "Peer_Box.h"
#include "Peers.h"

namespace bench
{
namespace
{

cv::Scalar ScalarOf(std::uint32_t argb)
{
    return {static_cast<double>(Channel(argb, 0)), static_cast<double>(Channel(argb, 8)),
            static_cast<double>(Channel(argb, 16)), static_cast<double>(Channel(argb, 24))};
}

//! With `shift` bits behind the point.
cv::Point PointOf(double x, double y, int shift)
{
    return {static_cast<int>(std::lround(x * (1 << shift))), static_cast<int>(std::lround(y * (1 << shift)))};
}

class OpenCv : public Contender
{
public:
    std::string Name() const override { return "OpenCV"; }
    std::string Version() const override { return CV_VERSION; }

    OpenCv() { cv::setNumThreads(1); }

    Job Prepare(const Input& input) override
    {
        const Case& kind   = input.kind;
        const auto  target = MakeTarget(input);
        const auto  whole  = cv::Mat(target->height, target->width, CV_8UC4, target->Bytes());
        const auto  color  = ScalarOf(kind.color);
        const auto  source =
            input.source ? cv::Mat(kind.sourceHeight, kind.sourceWidth, CV_8UC4, input.source->Bytes()) : cv::Mat();
        const auto rectangles = [&, target, width = kind.width, height = kind.height](auto draw)
        {
            return EachPlace(input,
                             [=](int x, int y)
                             {
                                 cv::Mat to(height, width, CV_8UC4, target->At(x, y),
                                            static_cast<std::size_t>(target->Pitch()));
                                 draw(to);
                             });
        };
        constexpr int FINE = 8;  // bits behind the point of smooth shapes

        Job job;
        job.target = target;
        switch (kind.operation)
        {
        case Operation::FillOpaque: job.run = rectangles([=](cv::Mat& to) { to.setTo(color); }); break;
        case Operation::Copy: job.run = rectangles([=](cv::Mat& to) { source.copyTo(to); }); break;
        case Operation::Convert565:
        {
            const cv::Mat from(kind.sourceHeight, kind.sourceWidth, CV_8UC2, input.rgb565->Bytes(),
                               static_cast<std::size_t>(input.Pitch565()));
            job.run = rectangles([=](cv::Mat& to) { cv::cvtColor(from, to, cv::COLOR_BGR5652BGRA); });
            break;
        }
        case Operation::Stretch:
        {
            if (kind.over) return {};
            const int filter = kind.bilinear ? cv::INTER_LINEAR : cv::INTER_NEAREST;
            job.run          = rectangles([=](cv::Mat& to) { cv::resize(source, to, to.size(), 0, 0, filter); });
            break;
        }
        case Operation::Rotate:
        {
            const int filter = (kind.bilinear ? cv::INTER_LINEAR : cv::INTER_NEAREST) | cv::WARP_INVERSE_MAP;
            job.note         = "stores without blending";
            job.isLess       = true;
            job.run          = Each(
                [=, &input](int i)
                {
                    (void)target;
                    const Affine forward = input.Turned(input.Place(i)), back = forward.Inverse();
                    const Box    box       = BoxOf(input, forward);
                    const Point  origin    = back.Map({double{0} + box.left, double{0} + box.top});
                    double       entries[] = {back.xx, back.xy, origin.x, back.yx, back.yy, origin.y};
                    cv::Mat      to        = whole(cv::Rect(box.left, box.top, box.Width(), box.Height()));
                    cv::warpAffine(source, to, cv::Mat(2, 3, CV_64F, entries), to.size(), filter,
                                            cv::BORDER_TRANSPARENT);
                });
            break;
        }
        case Operation::Line:
        {
            if (kind.dashed) return {};
            const int type = kind.smooth ? cv::LINE_AA : cv::LINE_8, width = static_cast<int>(kind.lineWidth);
            job.run = Each(
                [=, &input](int i) mutable
                {
                    (void)target;
                    const Segment& line = input.Line(i);
                    cv::line(whole, PointOf(line.from.x, line.from.y, 0), PointOf(line.to.x, line.to.y, 0), color,
                             width, type);
                });
            break;
        }
        case Operation::Polygon:
        {
            if (kind.textured) return {};
            const int                           shift = kind.smooth ? FINE : 0;
            std::vector<std::vector<cv::Point>> polygons;
            for (const std::vector<Point>& polygon : input.polygons)
            {
                polygons.emplace_back();
                for (const Point& p : polygon) polygons.back().push_back(PointOf(p.x - 0.5, p.y - 0.5, shift));
            }
            job.run = Each(
                [=, &input, type = kind.smooth ? cv::LINE_AA : cv::LINE_8](int i) mutable
                {
                    (void)target;
                    const std::vector<cv::Point>& polygon = polygons[input.PolygonIndex(i)];
                    const cv::Point*              points  = polygon.data();
                    const int                     count   = static_cast<int>(polygon.size());
                    cv::fillPoly(whole, &points, &count, 1, color, type, shift);
                });
            break;
        }
        case Operation::Dot:
            job.run = EachPlace(input,
                                [=, radius = static_cast<int>(kind.radius * (1 << FINE))](int x, int y) mutable
                                {
                                    (void)target;
                                    cv::circle(whole, PointOf(x - 0.5, y - 0.5, FINE), radius, color, cv::FILLED,
                                               cv::LINE_AA, FINE);
                                });
            break;
        default: return {};
        }
        return job;
    }
};

}  // namespace

std::unique_ptr<Contender> MakeOpenCv()
{
    return std::make_unique<OpenCv>();
}

}  // namespace bench
