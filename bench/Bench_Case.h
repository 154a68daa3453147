// Bench_Case: what is measured. A case is one operation with its sizes and its input, which every contender draws
// alike: the library itself (Bench_Kanvo) and, where asked for, others (peers/).
#ifndef BENCH_CASE_H
#define BENCH_CASE_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Bench_Picture.h"

namespace bench
{

enum class Operation
{
    FillOpaque,
    FillBlend,
    Copy,
    Over,           //!< blended by the source's alpha
    OverAlpha,      //!< and by a global alpha of 128
    Convert565,     //!< RGB565, stored opaque
    Blend565,       //!< RGB565, blended by a global alpha of 128
    ColorByMask,    //!< one colour through A8 coverage
    PictureByMask,  //!< an opaque ARGB32 picture through A8 coverage
    Picture565ByMask,
    Rle,  //!< a picture in whatever run-length-encoded form the contender has
    Stretch,
    Rotate,
    Line,
    Polygon,
    Dot
};

//! What pixels of a source have for alpha. The order of contenders changes with it.
enum class Content
{
    Opaque,
    Random,  //!< every alpha, without any order
    Icon     //!< discs: runs of opaque and of transparent pixels, soft edges
};

struct Point
{
    double x, y;
};

struct Segment
{
    Point from, to;
};

//! A point (x, y) becomes (xx x + xy y + x0, yx x + yy y + y0).
struct Affine
{
    double xx, yx, xy, yy, x0, y0;

    Point  Map(Point p) const { return {xx * p.x + xy * p.y + x0, yx * p.x + yy * p.y + y0}; }
    Affine Inverse() const;
};

struct Case
{
    std::string name;   //!< "operation_variant/size"
    std::string group;  //!< of the report
    Operation   operation = Operation::Copy;
    Content     content   = Content::Opaque;

    int  targetWidth = 480, targetHeight = 272;
    int  width = 0, height = 0;              //!< of the rectangle drawn, 0 for shapes
    int  sourceWidth = 0, sourceHeight = 0;  //!< 0 where there is no source
    bool bilinear = false;
    bool over     = false;  //!< stretch: blended, otherwise copied
    bool smooth   = false;  //!< anti-aliased
    bool textured = false;
    bool dashed   = false;  //!< 4 pixels on, 4 off
    bool isShort  = false;
    int  repeats  = 1;  //!< positions or shapes after which the input starts again

    double        lineWidth = 1;
    double        radius    = 0;
    double        inner     = 1;  //!< of every other corner, as part of the radius
    int           corners   = 0;
    std::uint32_t color     = 0xFF3366CC;

    //! Compared with memset, which only writes; otherwise with memcpy.
    bool BesideMemset() const;
    bool IsShape() const { return width == 0; }
};

//! Degrees by which Rotate turns.
constexpr double ANGLE = 30;
//! Pixels of a dash, and of a gap.
constexpr double DASH = 4;
//! Of OverAlpha and Blend565.
constexpr int GLOBAL_ALPHA = 128;

//! All of them, in the order of the report.
std::vector<Case> AllCases();

//! A case with its input. Equal on every machine and in every run.
struct Input
{
    Case kind;

    std::vector<Point>              places;  //!< top-left corners, or centres of what turns and of dots; whole numbers
    std::vector<Segment>            lines;
    std::vector<std::vector<Point>> polygons;    //!< one per repeat
    std::vector<double>             areas;       //!< pixels that each repeat covers
    double                          pixels = 0;  //!< that one operation covers, in the mean

    std::unique_ptr<Picture> source;         //!< straight alpha
    std::unique_ptr<Picture> premultiplied;  //!< the same for contenders that need it so
    std::unique_ptr<Buffer>  rgb565;
    std::unique_ptr<Buffer>  mask;

    int Pitch565() const { return (kind.sourceWidth * 2 + 3) & ~3; }
    int PitchMask() const { return (kind.sourceWidth + 3) & ~3; }

    const Point&   Place(int i) const { return places[static_cast<std::size_t>(i) % places.size()]; }
    const Segment& Line(int i) const { return lines[static_cast<std::size_t>(i) % lines.size()]; }
    std::size_t    PolygonIndex(int i) const { return static_cast<std::size_t>(i) % polygons.size(); }

    //! From source to target: about the source's middle, which lands on `center`.
    Affine Turned(Point center) const;
    //! From texture to target.
    Affine TextureFrame() const;
};

Input MakeInput(const Case& kind);

}  // namespace bench

#endif
