// LineStage: what tests of lines and dots draw on: a target between protected pages, and spies in place of the
// statistics and performance counters that lines use.
#ifndef LINESTAGE_H
#define LINESTAGE_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "AssertCapture.h"
#include "BlitBitmaps.h"
#include "Fence.h"
#include "Kanvo.h"
#include "Kanvo_Enums.h"
#include "Reference_Line.h"
#include "Trak_Counters.h"

namespace support
{

//! A statistic that remembers what it was given.
class StatSpy : public Trak_StatCounter
{
public:
    void Add(Tov_Value value) override
    {
        sum += static_cast<double>(value);
        ++count;
        last = value;
    }
    void Clear() { *this = StatSpy(); }

    double    sum   = 0.0;
    int       count = 0;
    Tov_Value last  = 0.0F;
};

//! A performance counter that remembers how often it ran, and whether each start (0) was followed by a stop (1).
class PerfSpy : public Trak_PerfCounter
{
public:
    void Start(Tov_Value value) override
    {
        ++starts;
        wellFormed = wellFormed && !running && value == 0.0F;
        running    = true;
    }
    void Stop(Tov_Value value) override
    {
        wellFormed = wellFormed && running && value == 1.0F;
        running    = false;
    }

    int  starts     = 0;
    bool running    = false;
    bool wellFormed = true;
};

//! Every counter of lines and dots, installed to the end of the scope. One at a time.
class LineSpies
{
public:
    LineSpies() { Exchange(); }
    ~LineSpies() { Exchange(); }
    LineSpies(const LineSpies&)            = delete;
    LineSpies& operator=(const LineSpies&) = delete;

    void Clear()
    {
        for (StatSpy* const stat :
             {&numberOfLines, &rejectedLines, &lineWidth, &lineLength, &numberOfDots, &rejectedDots, &dotRadius})
            *stat = StatSpy();
        for (PerfSpy* const perf : {&clipping, &thinLines, &wideLines, &dots}) *perf = PerfSpy();
    }

    //! Empty, or what differs from what a call was expected to count.
    std::string Differences(const reference::LineOutcome& expected) const
    {
        std::string text;
        const auto  check = [&](const char* name, double want, double got)
        {
            const double tolerance = 1e-5 * std::max(1.0, want < 0 ? -want : want);
            if (got < want - tolerance || got > want + tolerance || got != got)
                text += std::string(name) + " expected " + std::to_string(want) + ", got " + std::to_string(got) + "; ";
        };
        check("NumberOfLines", expected.numberOfLines, numberOfLines.sum);
        check("RejectedLines", expected.rejectedLines, rejectedLines.sum);
        check("LineWidth", expected.lineWidth, lineWidth.sum);
        check("LineLength", expected.lineLength, lineLength.sum);
        check("NumberOfDots", expected.numberOfDots, numberOfDots.sum);
        check("RejectedDot", expected.rejectedDots, rejectedDots.sum);
        check("DotRadius", expected.dotRadius, dotRadius.sum);
        check("LineClipping", expected.clippings, clipping.starts);
        check("ThinLines", expected.thinLines, thinLines.starts);
        check("WideLines", expected.wideLines, wideLines.starts);
        check("Dots", expected.dots, dots.starts);
        for (const PerfSpy* const perf : {&clipping, &thinLines, &wideLines, &dots})
        {
            if (!perf->wellFormed || perf->running) text += "a counter is not started with 0 and stopped with 1; ";
        }
        return text;
    }

    StatSpy numberOfLines;
    StatSpy rejectedLines;
    StatSpy lineWidth;
    StatSpy lineLength;
    StatSpy numberOfDots;
    StatSpy rejectedDots;
    StatSpy dotRadius;
    PerfSpy clipping;
    PerfSpy thinLines;
    PerfSpy wideLines;
    PerfSpy dots;

private:
    void Exchange()
    {
        std::swap(g_kStat_NumberOfLines, m_stats[0]);
        std::swap(g_kStat_RejectedLines, m_stats[1]);
        std::swap(g_kStat_LineWidth, m_stats[2]);
        std::swap(g_kStat_LineLength, m_stats[3]);
        std::swap(g_kStat_NumberOfDots, m_stats[4]);
        std::swap(g_kStat_RejectedDot, m_stats[5]);
        std::swap(g_kStat_DotRadius, m_stats[6]);
        std::swap(g_kPerf_LineClipping, m_perfs[0]);
        std::swap(g_kPerf_ThinLines, m_perfs[1]);
        std::swap(g_kPerf_WideLines, m_perfs[2]);
        std::swap(g_kPerf_Dots, m_perfs[3]);
    }

    Trak_StatCounter* m_stats[7] = {&numberOfLines, &rejectedLines, &lineWidth, &lineLength,
                                    &numberOfDots,  &rejectedDots,  &dotRadius};
    Trak_PerfCounter* m_perfs[4] = {&clipping, &thinLines, &wideLines, &dots};
};

//! A locked target of black pixels flush between two protected pages, with a screen of its own.
class LineStage
{
public:
    LineStage(unsigned width, unsigned height, std::uint32_t background = 0xFF000000U, Against end = Against::BackFence)
        : m_width(width),
          m_height(height),
          m_fence(std::size_t{width} * height * 4, end),
          m_screen(&m_library),
          m_bitmap(&m_screen, width, height, m_fence.Data())
    {
        std::fill_n(m_fence.As<std::uint32_t>(), std::size_t{width} * height, background);
        m_bitmap.Lock();
    }

    unsigned           Width() const { return m_width; }
    unsigned           Height() const { return m_height; }
    PitchedTarget&     Bitmap() { return m_bitmap; }
    Kanvo_RenderState& State() { return m_screen.GetRenderState(); }

    std::uint32_t  At(int x, int y) { return Words()[static_cast<unsigned>(y) * m_width + static_cast<unsigned>(x)]; }
    std::uint32_t* Words() { return m_fence.As<std::uint32_t>(); }
    std::vector<std::uint32_t> Pixels() { return {Words(), Words() + std::size_t{m_width} * m_height}; }
    void Fill(std::uint32_t color) { std::fill_n(Words(), std::size_t{m_width} * m_height, color); }
    bool IsSlackUntouched() const { return m_fence.IsSlackUntouched(); }

    void Line(float x0, float y0, float x1, float y1, std::uint32_t color, Tov_Flag flags = 0, float startWidth = 1.0F,
              float endWidth = 0.0F)
    {
        m_bitmap.DrawLine(Kanvo_Vector2(x0, y0), Kanvo_Vector2(x1, y1), color, flags, startWidth, endWidth);
    }
    void Dot(float x, float y, float radius, std::uint32_t color, Tov_Flag flags = 0)
    {
        m_bitmap.DrawDot(x, y, radius, color, flags);
    }

    //! The target as the reference sees it, over pixels of the test.
    reference::Canvas CanvasOver(std::uint32_t* pixels) const
    {
        return {pixels,
                m_width,
                m_height,
                m_width,
                m_bitmap.GetClipMinX(),
                m_bitmap.GetClipMinY(),
                m_bitmap.GetClipMaxX(),
                m_bitmap.GetClipMaxY()};
    }

    //! How many pixels differ from the background.
    int Count(std::uint32_t background = 0xFF000000U)
    {
        int count = 0;
        for (std::size_t at = 0; at < std::size_t{m_width} * m_height; ++at) count += Words()[at] != background;
        return count;
    }

    //! The pixels that differ from the background as text, row by row: '.' and '#'.
    std::vector<std::string> Picture(std::uint32_t background = 0xFF000000U)
    {
        std::vector<std::string> rows;
        for (unsigned y = 0; y < m_height; ++y)
        {
            std::string row;
            for (unsigned x = 0; x < m_width; ++x) row += Words()[y * m_width + x] == background ? '.' : '#';
            rows.push_back(row);
        }
        return rows;
    }

private:
    unsigned      m_width;
    unsigned      m_height;
    Fence         m_fence;
    Kanvo         m_library;
    Kanvo_Screen  m_screen;
    PitchedTarget m_bitmap;
};

}  // namespace support

#endif
