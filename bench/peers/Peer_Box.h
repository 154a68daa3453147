// Peer_Box: the part of the target that a turned source can reach, for those who draw rectangles only.
#ifndef PEER_BOX_H
#define PEER_BOX_H

#include <algorithm>
#include <cmath>

#include "Bench_Case.h"

namespace bench
{

//! Right and bottom are exclusive.
struct Box
{
    int left, top, right, bottom;

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
};

inline Box BoxOf(const Input& input, const Affine& turned)
{
    const double width = input.kind.sourceWidth, height = input.kind.sourceHeight;
    Box          box{input.kind.targetWidth, input.kind.targetHeight, 0, 0};
    for (const Point corner : {Point{0, 0}, {width, 0}, {0, height}, {width, height}})
    {
        const Point p = turned.Map(corner);
        const int   x = static_cast<int>(std::floor(p.x)), y = static_cast<int>(std::floor(p.y));
        box.left   = std::min(box.left, x - 1);
        box.top    = std::min(box.top, y - 1);
        box.right  = std::max(box.right, x + 2);
        box.bottom = std::max(box.bottom, y + 2);
    }
    return {std::max(box.left, 0), std::max(box.top, 0), std::min(box.right, input.kind.targetWidth),
            std::min(box.bottom, input.kind.targetHeight)};
}

}  // namespace bench

#endif
