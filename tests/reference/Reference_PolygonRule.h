// Reference_PolygonRule: what polygons look like, stated without any scan conversion.
//
//   plain          row y is cut at y + 1/2; sorted crossings belong together two by two; of a pair xs, xe more than half
//                  a pixel apart the pixels floor(xs + 0.1) to floor(xe - 0.4) are painted. Clipped, the pair is what is
//                  left of it between the borders
//   anti-aliased   the area of each pixel that lies inside by the even-odd rule
//
// In double precision, straight from the corners. Shares nothing with the library, nor with Reference_Polygon.h.
#ifndef REFERENCE_POLYGONRULE_H
#define REFERENCE_POLYGONRULE_H

#include <cstdint>
#include <vector>

#include "Reference_Polygon.h"

namespace reference
{

//! What the rule says about a pixel. Within the reach of single-precision rounding it says nothing.
enum class Rule : std::uint8_t
{
    Empty,
    Painted,
    DoubtfulEmpty,    // nearer to a limit than rounding allows to tell; by the exact numbers empty
    DoubtfulPainted,  // the same; by the exact numbers painted
};

//! First and last column of a clip rectangle.
struct Columns
{
    int first;
    int last;
};

//! The rule for every pixel of width x height, row by row.
void PlainRule(const Outline& outline, int width, int height, Columns clip, std::vector<Rule>& pixels);

//! Whether a side no higher than 0.01 pixels crosses the middle of a row of the picture. Scan conversion drops such
//! sides, and the rule does not.
bool HasFlatCrossing(const Outline& outline, int height);

//! Coverage of pixels, 0 to 1, by even-odd area: LINES lines in each row, exact along the line.
class ExactArea
{
public:
    static constexpr int LINES = 60;

    ExactArea(int width, int height);

    void Cover(const Outline& outline);

    double At(int x, int y) const { return m_coverage[Index(x, y)]; }

    //! Whether a side comes nearer to the pixel's square than margin (of the last outline).
    bool IsTouched(int x, int y) const { return m_touched[Index(x, y)] != 0; }

    //! Marks the pixels that sides come nearer to than margin, as squares around them.
    void Touch(const Outline& outline, double margin);

private:
    std::size_t Index(int x, int y) const { return static_cast<std::size_t>(y * m_width + x); }

    int                              m_width;
    int                              m_height;
    std::vector<std::vector<double>> m_crossings;  // per line
    std::vector<double>              m_coverage;
    std::vector<std::uint8_t>        m_touched;
};

}  // namespace reference

#endif
