// Reference_PolygonRule: see the header.
#include "Reference_PolygonRule.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace reference
{

namespace
{

struct Point
{
    double x;
    double y;
};

Point PointAt(const Outline& outline, std::size_t index)
{
    const Corner& corner = outline[index % outline.size()];
    return {static_cast<double>(corner.x), static_cast<double>(corner.y)};
}

//! Calls do(upper, lower) for each side that is not level.
template <class Do>
void ForEachSide(const Outline& outline, Do&& act)
{
    for (std::size_t index = 0; index < outline.size(); ++index)
    {
        Point upper = PointAt(outline, index);
        Point lower = PointAt(outline, index + 1);
        if (upper.y == lower.y) continue;
        if (upper.y > lower.y) std::swap(upper, lower);
        act(upper, lower);
    }
}

double CrossingAt(const Point& upper, const Point& lower, double y)
{
    return upper.x + (lower.x - upper.x) * ((y - upper.y) / (lower.y - upper.y));
}

//! A crossing and how far single precision may be off: the drift along the side, and its slope times that of y.
struct Crossing
{
    double x;
    double doubt;
};

constexpr double DRIFT = 1.0e-3;
constexpr double ERROR = 2.0e-5;

int Clamped(double value, int low, int high)
{
    return static_cast<int>(std::clamp(value, static_cast<double>(low), static_cast<double>(high)));
}

}  // namespace

void PlainRule(const Outline& outline, int width, int height, Columns clip, std::vector<Rule>& pixels)
{
    pixels.assign(static_cast<std::size_t>(width * height), Rule::Empty);
    std::vector<std::vector<Crossing>> rows(static_cast<std::size_t>(height));
    std::vector<char>                  unsure(rows.size(), 0);
    const double                       leftBorder  = clip.first;
    const double                       rightBorder = clip.last + 1.0 - 0.0001;

    ForEachSide(outline,
                [&](const Point& upper, const Point& lower)
                {
                    // rows whose middle lies below the upper end and not below the lower one
                    const int first = Clamped(std::floor(upper.y - 0.5) + 1.0, 0, height);
                    const int last  = Clamped(std::floor(lower.y - 0.5), -1, height - 1);
                    for (int row = first; row <= last; ++row)
                    {
                        const double slope = std::fabs((lower.x - upper.x) / (lower.y - upper.y));
                        const double doubt = std::min(DRIFT + slope * ERROR, DRIFT + std::fabs(lower.x - upper.x));
                        const double x     = std::clamp(CrossingAt(upper, lower, row + 0.5), leftBorder, rightBorder);
                        rows[static_cast<std::size_t>(row)].push_back({x, doubt});
                    }
                    // an end that lies on the middle but for rounding
                    for (const double y : {upper.y, lower.y})
                    {
                        const double row = std::floor(y);
                        const double off = std::fabs(y - row - 0.5);
                        if (off != 0.0 && off < ERROR && row >= 0.0 && row < height)
                            unsure[static_cast<std::size_t>(row)] = 1;
                    }
                });

    for (int row = 0; row < height; ++row)
    {
        std::vector<Crossing>& crossings = rows[static_cast<std::size_t>(row)];
        Rule* const            line      = &pixels[static_cast<std::size_t>(row * width)];
        std::sort(crossings.begin(), crossings.end(),
                  [](const Crossing& one, const Crossing& other) { return one.x < other.x; });
        for (std::size_t at = 0; at + 1 < crossings.size(); at += 2)
        {
            const Crossing& start = crossings[at];
            const Crossing& end   = crossings[at + 1];
            const double    gap   = end.x - start.x - 0.5;
            const double    doubt = start.doubt + end.doubt;
            const auto      from  = [&](double by) { return Clamped(std::floor(start.x + 0.1 + by), 0, width); };
            const auto      to    = [&](double by) { return Clamped(std::floor(end.x - 0.4 + by), -1, width - 1); };

            if (gap > -doubt)
            {
                for (int x = from(-start.doubt); x <= to(end.doubt); ++x)
                    if (line[x] == Rule::Empty) line[x] = Rule::DoubtfulEmpty;
            }
            if (gap > 0.0)
            {
                for (int x = from(0.0); x <= to(0.0); ++x)
                    if (line[x] != Rule::Painted) line[x] = Rule::DoubtfulPainted;
            }
            if (gap > doubt)
            {
                for (int x = from(start.doubt); x <= to(-end.doubt); ++x) line[x] = Rule::Painted;
            }
        }
        if (unsure[static_cast<std::size_t>(row)] == 0) continue;
        for (int x = 0; x < width; ++x)
        {
            if (line[x] == Rule::Empty) line[x] = Rule::DoubtfulEmpty;
            if (line[x] == Rule::Painted) line[x] = Rule::DoubtfulPainted;
        }
    }
}

bool HasFlatCrossing(const Outline& outline, int height)
{
    bool found = false;
    ForEachSide(outline,
                [&](const Point& upper, const Point& lower)
                {
                    if (lower.y - upper.y > 0.01 + ERROR || lower.y < -ERROR || upper.y > height + ERROR) return;
                    if (std::floor(upper.y + 0.5 - ERROR) != std::floor(lower.y + 0.5 + ERROR)) found = true;
                });
    return found;
}

// ---- area -----------------------------------------------------------------------------------------------------------

ExactArea::ExactArea(int width, int height)
    : m_width(width),
      m_height(height),
      m_crossings(static_cast<std::size_t>(height * LINES)),
      m_coverage(static_cast<std::size_t>(width * height)),
      m_touched(m_coverage.size())
{
}

void ExactArea::Cover(const Outline& outline)
{
    for (std::vector<double>& line : m_crossings) line.clear();
    ForEachSide(outline,
                [&](const Point& upper, const Point& lower)
                {
                    // line n lies at (n + 1/2) / LINES
                    const int    last  = Clamped(std::ceil(lower.y * LINES - 0.5) - 1.0, -1, m_height * LINES - 1);
                    const double slope = (lower.x - upper.x) / (lower.y - upper.y);
                    for (int n = Clamped(std::ceil(upper.y * LINES - 0.5), 0, m_height * LINES); n <= last; ++n)
                        m_crossings[static_cast<std::size_t>(n)].push_back(upper.x +
                                                                           slope * ((n + 0.5) / LINES - upper.y));
                });

    std::fill(m_coverage.begin(), m_coverage.end(), 0.0);
    for (int n = 0; n < m_height * LINES; ++n)
    {
        std::vector<double>& line = m_crossings[static_cast<std::size_t>(n)];
        double* const        row  = &m_coverage[Index(0, n / LINES)];
        std::sort(line.begin(), line.end());
        for (std::size_t at = 0; at + 1 < line.size(); at += 2)
        {
            const double start = std::clamp(line[at], 0.0, static_cast<double>(m_width));
            const double end   = std::clamp(line[at + 1], 0.0, static_cast<double>(m_width));
            for (int x = static_cast<int>(start); x < m_width && x < end; ++x)
                row[x] += (std::min(end, x + 1.0) - std::max(start, static_cast<double>(x))) / LINES;
        }
    }
}

void ExactArea::Touch(const Outline& outline, double margin)
{
    std::fill(m_touched.begin(), m_touched.end(), std::uint8_t{0});
    for (std::size_t index = 0; index < outline.size(); ++index)
    {
        Point upper = PointAt(outline, index);
        Point lower = PointAt(outline, index + 1);
        if (upper.y > lower.y) std::swap(upper, lower);
        const int first = Clamped(std::floor(upper.y - margin), 0, m_height);
        const int last  = Clamped(std::floor(lower.y + margin), -1, m_height - 1);
        for (int row = first; row <= last; ++row)
        {
            const double top    = std::clamp(row - margin, upper.y, lower.y);
            const double bottom = std::clamp(row + 1.0 + margin, upper.y, lower.y);
            double       left   = upper.x;
            double       right  = lower.x;
            if (upper.y != lower.y)
            {
                left  = CrossingAt(upper, lower, top);
                right = CrossingAt(upper, lower, bottom);
            }
            if (left > right) std::swap(left, right);
            const int to = Clamped(std::floor(right + margin), -1, m_width - 1);
            for (int x = Clamped(std::floor(left - margin), 0, m_width); x <= to; ++x) m_touched[Index(x, row)] = 1;
        }
    }
}

}  // namespace reference
