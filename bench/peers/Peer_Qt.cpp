// Peer_Qt: the raster engine behind QPainter, premultiplied.
#include <QImage>
#include <QPainter>
#include <QPolygonF>

#include "Peers.h"

namespace bench
{
namespace
{

struct Stage
{
    std::shared_ptr<Picture> picture;
    QImage                   image;
    QImage                   source;
    QPainter                 painter;

    Stage(const Input& input, const std::shared_ptr<Picture>& target)
        : picture(target),
          image(target->Bytes(), target->width, target->height, target->Pitch(), QImage::Format_ARGB32_Premultiplied)
    {
        const Case& kind = input.kind;
        if (input.rgb565)
        {
            source = QImage(input.rgb565->Bytes(), kind.sourceWidth, kind.sourceHeight, input.Pitch565(),
                            QImage::Format_RGB16);
        }
        else if (input.premultiplied)
        {
            source = QImage(input.premultiplied->Bytes(), kind.sourceWidth, kind.sourceHeight,
                            input.premultiplied->Pitch(), QImage::Format_ARGB32_Premultiplied);
        }
        painter.begin(&image);
    }
};
using StagePtr = std::shared_ptr<Stage>;

QTransform TransformOf(const Affine& a)
{
    return {a.xx, a.yx, a.xy, a.yy, a.x0, a.y0};
}

std::function<void(int)> Lines(const Input& input, const StagePtr& s)
{
    const Case& kind = input.kind;
    QPen        pen(QColor::fromRgba(kind.color));
    pen.setWidthF(kind.lineWidth);
    pen.setCapStyle(Qt::FlatCap);
    if (kind.dashed) pen.setDashPattern({DASH / kind.lineWidth, DASH / kind.lineWidth});
    s->painter.setPen(pen);
    s->painter.setRenderHint(QPainter::Antialiasing, kind.smooth);
    if (!kind.smooth)
    {
        return Each(
            [=, &input](int i)
            {
                const Segment& line = input.Line(i);
                s->painter.drawLine(static_cast<int>(line.from.x), static_cast<int>(line.from.y),
                                    static_cast<int>(line.to.x), static_cast<int>(line.to.y));
            });
    }
    return Each(
        [=, &input](int i)
        {
            const Segment& line = input.Line(i);
            s->painter.drawLine(QPointF(line.from.x + 0.5, line.from.y + 0.5),
                                QPointF(line.to.x + 0.5, line.to.y + 0.5));
        });
}

std::function<void(int)> Polygons(const Input& input, const StagePtr& s)
{
    const Case& kind = input.kind;
    s->painter.setRenderHint(QPainter::Antialiasing, kind.smooth);
    s->painter.setPen(Qt::NoPen);
    if (kind.textured)
    {
        QBrush brush(s->source);
        brush.setTransform(TransformOf(input.TextureFrame()));
        s->painter.setBrush(brush);
    }
    else
    {
        s->painter.setBrush(QColor::fromRgba(kind.color));
    }
    std::vector<QPolygonF> polygons;
    for (const std::vector<Point>& polygon : input.polygons)
    {
        polygons.emplace_back();
        for (const Point& p : polygon) polygons.back() << QPointF(p.x, p.y);
    }
    return Each(
        [=, &input](int i)
        {
            const QPolygonF& polygon = polygons[input.PolygonIndex(i)];
            s->painter.drawPolygon(polygon.constData(), static_cast<int>(polygon.size()));
        });
}

std::function<void(int)> Draws(const Input& input, const StagePtr& s)
{
    const Case& kind  = input.kind;
    const int   width = kind.width, height = kind.height;
    switch (kind.operation)
    {
    case Operation::FillOpaque:
    case Operation::FillBlend:
        return EachPlace(input, [=, color = QColor::fromRgba(kind.color)](int x, int y)
                         { s->painter.fillRect(x, y, width, height, color); });
    case Operation::Copy:
    case Operation::Convert565:
        s->painter.setCompositionMode(QPainter::CompositionMode_Source);
        return EachPlace(input, [=](int x, int y) { s->painter.drawImage(x, y, s->source); });
    case Operation::OverAlpha:
    case Operation::Blend565:
        s->painter.setOpacity(GLOBAL_ALPHA / 255.0);
        return EachPlace(input, [=](int x, int y) { s->painter.drawImage(x, y, s->source); });
    case Operation::Over: return EachPlace(input, [=](int x, int y) { s->painter.drawImage(x, y, s->source); });
    case Operation::Stretch:
        if (!kind.over) s->painter.setCompositionMode(QPainter::CompositionMode_Source);
        s->painter.setRenderHint(QPainter::SmoothPixmapTransform, kind.bilinear);
        return EachPlace(input, [=, from = QRectF(0, 0, kind.sourceWidth, kind.sourceHeight)](int x, int y)
                         { s->painter.drawImage(QRectF(x, y, width, height), s->source, from); });
    case Operation::Rotate:
        s->painter.setRenderHint(QPainter::SmoothPixmapTransform, kind.bilinear);
        return Each(
            [=, &input](int i)
            {
                s->painter.setTransform(TransformOf(input.Turned(input.Place(i))));
                s->painter.drawImage(0, 0, s->source);
            });
    case Operation::Line: return Lines(input, s);
    case Operation::Polygon: return Polygons(input, s);
    case Operation::Dot:
        s->painter.setRenderHint(QPainter::Antialiasing, true);
        s->painter.setPen(Qt::NoPen);
        s->painter.setBrush(QColor::fromRgba(kind.color));
        return EachPlace(input, [=, radius = kind.radius](int x, int y)
                         { s->painter.drawEllipse(QPointF(x, y), radius, radius); });
    default: return nullptr;
    }
}

class QtRaster : public Contender
{
public:
    std::string Name() const override { return "Qt"; }
    std::string Version() const override { return qVersion(); }

    Job Prepare(const Input& input) override
    {
        Job job;
        job.target = MakeTarget(input);
        job.run    = Draws(input, std::make_shared<Stage>(input, job.target));
        return job;
    }
};

}  // namespace

std::unique_ptr<Contender> MakeQt()
{
    return std::make_unique<QtRaster>();
}

}  // namespace bench
