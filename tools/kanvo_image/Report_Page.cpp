// Report_Page: see the header.
#include "Report_Page.h"

#include "Encoded_Text.h"
#include "Html_Text.h"
#include "Program_Text.h"

namespace kanvo_image
{
namespace
{

constexpr const char* Style = R"(
  :root { color-scheme: dark; --line: #33435a; --quiet: #93a5bc; --bar: #2b6f8f; --best: #22c7b0; }
  * { box-sizing: border-box; }
  body { margin: 0; padding: 2rem; background: #10161f; color: #f2f6fa; font: 15px/1.5 system-ui, sans-serif; }
  h1 { margin: 0; font-size: 1.6rem; }
  h2 { margin: 0 0 .6rem; font-size: 1.15rem; }
  h2 small { color: var(--quiet); font-weight: 400; }
  p { margin: .2rem 0 .9rem; color: var(--quiet); max-width: 60rem; }
  section { display: grid; grid-template-columns: 11rem auto; gap: 0 1.5rem; margin: 0 0 1.5rem; padding-top: 1rem;
            border-top: 1px solid var(--line); }
  section h2 { grid-column: 1 / 3; }
  img { display: block; max-width: 10rem; outline: 1px solid var(--line);
        background: repeating-conic-gradient(#2a3646 0 25%, #1c2633 0 50%) 0 0 / 16px 16px; }
  table { border-collapse: collapse; font-variant-numeric: tabular-nums; align-self: start; }
  th, td { padding: .15rem 1.1rem .15rem 0; border-bottom: 1px solid var(--line); text-align: left; }
  th { color: var(--quiet); font-weight: 500; }
  .number { text-align: right; }
  .bar { width: 9rem; }
  .bar i { display: block; height: .6rem; background: var(--bar); }
  tr.best td:first-child { color: var(--best); font-weight: 600; }
  tr.best .bar i { background: var(--best); }
)";

//! One format over all pictures.
struct Total
{
    std::string   name;
    std::uint64_t bytes    = 0;
    std::size_t   lossless = 0;  //!< pictures
};

std::uint64_t Argb32Bytes(const std::vector<PictureReport>& reports)
{
    std::uint64_t bytes = 0;
    for (const PictureReport& report : reports)
    {
        bytes += Argb32Size(report.Pixels());
    }
    return bytes;
}

std::string ShareText(const PictureReport& report, const Entry& entry)
{
    return Percent(entry.bytes, Argb32Size(report.Pixels()));
}

//! Coverage is drawn in a colour: that it shows other colours than the picture is no error.
bool IsCoverage(const Entry& entry)
{
    return entry.format == image::Format::A8 && !entry.error.IsNone();
}

std::string MeanText(const Entry& entry)
{
    return entry.error.IsNone() ? "lossless" : IsCoverage(entry) ? "coverage" : MilliText(entry.error.MeanSeenMilli());
}

std::string LargestText(const Entry& entry)
{
    return entry.error.IsNone() || IsCoverage(entry) ? "" : MilliText(entry.error.LargestSeenMilli());
}

//! Every format, and at last the mixture that `auto` would choose.
std::vector<Total> Totals(const std::vector<PictureReport>& reports)
{
    std::vector<Total> totals;
    for (const image::Format format : image::AllFormats())
    {
        totals.push_back({image::FormatName(format)});
    }
    Total choice{"auto"};
    for (const PictureReport& report : reports)
    {
        for (std::size_t index = 0; index < report.entries.size(); ++index)
        {
            const Entry& entry = report.entries[index];
            totals[index].bytes += entry.bytes;
            totals[index].lossless += entry.error.IsNone() ? 1 : 0;
            choice.bytes += entry.format == report.smallest ? entry.bytes : 0;
        }
        ++choice.lossless;
    }
    totals.push_back(choice);
    return totals;
}

std::string NanosecondsPerPixel(const PictureReport& report, const Entry& entry)
{
    return Fixed(entry.microseconds * 1000 / static_cast<double>(report.Pixels()), 2);
}

std::string HtmlCell(const std::string& text, bool number = true)
{
    return std::string("<td") + (number ? " class=\"number\"" : "") + ">" + HtmlEscaped(text) + "</td>";
}

std::string HtmlRow(const PictureReport& report, const Entry& entry)
{
    const double share = 100 * static_cast<double>(entry.bytes) / static_cast<double>(Argb32Size(report.Pixels()));
    return std::string("      <tr") + (entry.format == report.smallest ? " class=\"best\"" : "") + ">" +
           HtmlCell(image::FormatName(entry.format), false) + HtmlCell(Grouped(entry.bytes)) +
           HtmlCell(ShareText(report, entry)) +
           "<td class=\"bar\"><i style=\"width:" + Fixed(share > 100 ? 100 : share, 1) + "%\"></i></td>" +
           HtmlCell(Fixed(entry.microseconds, 1)) + HtmlCell(NanosecondsPerPixel(report, entry)) +
           HtmlCell(MeanText(entry)) + HtmlCell(LargestText(entry)) + "</tr>\n";
}

std::string HtmlSection(const PictureReport& report)
{
    std::string html = "  <section>\n    <h2>" + HtmlEscaped(report.name) + " <small>" +
                       SizeText(report.width, report.height) + ", " + report.colours +
                       " colours</small></h2>\n    <img alt=\"\" src=\"data:image/png;base64," +
                       Base64(report.thumbnail) +
                       "\">\n    <table>\n      <tr><th>format</th><th class=\"number\">bytes</th>"
                       "<th class=\"number\">of argb32</th><th></th><th class=\"number\">draw, µs</th>"
                       "<th class=\"number\">ns a pixel</th><th class=\"number\">mean error</th>"
                       "<th class=\"number\">largest</th></tr>\n";
    for (const Entry& entry : report.entries)
    {
        html += HtmlRow(report, entry);
    }
    return html + "    </table>\n  </section>\n";
}

}  // namespace

std::string ReportTable(const std::vector<PictureReport>& reports)
{
    Table table({"picture", "size", "colours", "format", ">bytes", ">of argb32", ">draw us", ">ns a pixel",
                 ">mean error", ">largest"});
    for (const PictureReport& report : reports)
    {
        bool first = true;
        for (const Entry& entry : report.entries)
        {
            table.Add({first ? report.name : "", first ? SizeText(report.width, report.height) : "",
                       first ? report.colours : "",
                       image::FormatName(entry.format) + std::string(entry.format == report.smallest ? " *" : ""),
                       Grouped(entry.bytes), ShareText(report, entry), Fixed(entry.microseconds, 1),
                       NanosecondsPerPixel(report, entry), MeanText(entry), LargestText(entry)});
            first = false;
        }
    }
    Table totals({Counted(reports.size(), "picture"), ">bytes", ">of argb32", ">lossless"});
    for (const Total& total : Totals(reports))
    {
        totals.Add({total.name, Grouped(total.bytes), Percent(total.bytes, Argb32Bytes(reports)),
                    std::to_string(total.lossless) + " of " + std::to_string(reports.size())});
    }
    return table.Text() + "\n" + totals.Text() +
           "\n* the smallest lossless format, the one that --format auto chooses\nErrors as they are seen, in levels "
           "of 255; coverage is to be drawn in a colour.\n";
}

std::string ReportCsv(const std::vector<PictureReport>& reports)
{
    std::string csv =
        "picture,width,height,format,bytes,ratio,draw_us,ns_per_pixel,lossless,mean_error,largest_error,auto\n";
    for (const PictureReport& report : reports)
    {
        for (const Entry& entry : report.entries)
        {
            const double ratio = static_cast<double>(entry.bytes) / static_cast<double>(Argb32Size(report.Pixels()));
            csv += CsvField(report.name) + "," + std::to_string(report.width) + "," + std::to_string(report.height) +
                   "," + image::FormatName(entry.format) + "," + std::to_string(entry.bytes) + "," + Fixed(ratio, 4) +
                   "," + Fixed(entry.microseconds, 3) + "," + NanosecondsPerPixel(report, entry) + "," +
                   (entry.error.IsNone() ? "1" : "0") + "," + MilliText(entry.error.MeanSeenMilli()) + "," +
                   MilliText(entry.error.LargestSeenMilli()) + "," + (entry.format == report.smallest ? "1" : "0") +
                   "\n";
        }
    }
    return csv;
}

std::string ReportHtml(const std::vector<PictureReport>& reports)
{
    std::string html =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width\">\n<title>Pictures in every format</title>\n<style>" +
        std::string(Style) +
        "</style>\n</head>\n<body>\n  <h1>Pictures in every format</h1>\n"
        "  <p>Bytes of the stored files, also as a share of what argb32 takes; the time to draw the whole picture, "
        "unscaled, on "
        "the machine that made this page; the error as it is seen, in levels of 255. Highlighted: the smallest "
        "lossless "
        "format.</p>\n"
        "  <table>\n    <tr><th>" +
        Counted(reports.size(), "picture") +
        "</th><th class=\"number\">bytes</th><th class=\"number\">of argb32</th><th class=\"number\">lossless</th>"
        "</tr>\n";
    for (const Total& total : Totals(reports))
    {
        html += "    <tr>" + HtmlCell(total.name, false) + HtmlCell(Grouped(total.bytes)) +
                HtmlCell(Percent(total.bytes, Argb32Bytes(reports))) +
                HtmlCell(std::to_string(total.lossless) + " of " + std::to_string(reports.size())) + "</tr>\n";
    }
    html += "  </table>\n  <p></p>\n";
    for (const PictureReport& report : reports)
    {
        html += HtmlSection(report);
    }
    return html + "</body>\n</html>\n";
}

}  // namespace kanvo_image
