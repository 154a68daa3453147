// Gallery_Page: see the header.
#include "Gallery_Page.h"

#include <algorithm>
#include <sstream>

#include "Html_Text.h"

namespace gallery
{
namespace
{

constexpr const char* Style = R"(
  :root { color-scheme: dark; --line: #33435a; --quiet: #93a5bc; --good: #22c7b0; --noted: #ffb224; --bad: #ff5c74; }
  * { box-sizing: border-box; }
  body { margin: 0; padding: 2rem; background: #10161f; color: #f2f6fa; font: 15px/1.5 system-ui, sans-serif; }
  h1 { margin: 0; font-size: 1.6rem; }
  h2 { margin: 0; font-size: 1.15rem; }
  p { margin: .2rem 0 .9rem; color: var(--quiet); max-width: 60rem; }
  a { color: inherit; }
  table { border-collapse: collapse; margin: 1rem 0 2.5rem; font-variant-numeric: tabular-nums; }
  th, td { padding: .2rem 1.1rem .2rem 0; border-bottom: 1px solid var(--line); text-align: left; }
  th { color: var(--quiet); font-weight: 500; }
  td.number { text-align: right; }
  code { font: 13px ui-monospace, monospace; }
  section { margin: 0 0 2.5rem; padding-top: 1rem; border-top: 1px solid var(--line); }
  .pair { display: flex; flex-wrap: wrap; gap: 1rem; }
  figure { margin: 0; }
  figcaption { padding-top: .3rem; color: var(--quiet); }
  img { display: block; image-rendering: pixelated; outline: 1px solid var(--line);
        background: repeating-conic-gradient(#2a3646 0 25%, #1c2633 0 50%) 0 0 / 16px 16px; }
  .verdict { padding: .05rem .6rem; border-radius: 1rem; border: 1px solid; font-size: .85rem; white-space: nowrap; }
  .good { color: var(--good); } .noted { color: var(--noted); } .bad { color: var(--bad); }
)";

std::string VerdictMark(const Result& result)
{
    const char* kind = result.differing == 0 ? "good" : result.AsDocumented() ? "noted" : "bad";
    return std::string("<span class=\"verdict ") + kind + "\">" + result.Verdict() + "</span>";
}

void WriteRow(std::ostream& page, const Result& result)
{
    const std::string one   = ChecksumText(result.portable.checksum);
    const std::string other = ChecksumText(result.optimised.checksum);
    page << "    <tr><td><a href=\"#" << HtmlEscaped(result.name) << "\">" << HtmlEscaped(result.name)
         << "</a></td><td>" << SizeText(*result.portable.bitmap) << "</td><td><code>" << one << "</code>"
         << (one == other ? "" : " / <code>" + other + "</code>") << "</td><td class=\"number\">"
         << MillisecondsText(result.portable.milliseconds) << "</td><td class=\"number\">"
         << MillisecondsText(result.optimised.milliseconds) << "</td><td>" << VerdictMark(result) << "</td></tr>\n";
}

void WriteFigure(std::ostream& page, const std::string& file, const Rendering& rendering, const char* setting,
                 int scale)
{
    const auto zoom = static_cast<Tov_UInt>(scale);
    page << "      <figure><a href=\"" << HtmlEscaped(file) << "\"><img src=\"" << HtmlEscaped(file) << "\" width=\""
         << rendering.bitmap->GetWidth() * zoom << "\" height=\"" << rendering.bitmap->GetHeight() * zoom << "\" alt=\""
         << setting << "\"></a>\n        <figcaption>" << setting << " &middot; CRC-32 <code>"
         << ChecksumText(rendering.checksum) << "</code> &middot; " << MillisecondsText(rendering.milliseconds)
         << " ms</figcaption></figure>\n";
}

void WriteSection(std::ostream& page, const Result& result, int scale)
{
    page << "  <section id=\"" << HtmlEscaped(result.name) << "\">\n    <h2>" << HtmlEscaped(result.name) << " "
         << VerdictMark(result) << "</h2>\n    <p>" << HtmlEscaped(result.scene->about)
         << "</p>\n    <div class=\"pair\">\n";
    WriteFigure(page, PortableFile(result), result.portable, "portable", scale);
    WriteFigure(page, OptimisedFile(result), result.optimised, "optimised", scale);
    page << "    </div>\n  </section>\n";
}

}  // namespace

std::string PortableFile(const Result& result)
{
    return result.name + ".portable.png";
}

std::string OptimisedFile(const Result& result)
{
    return result.name + ".optimised.png";
}

std::string Page(const std::vector<Result>& results, int scale)
{
    std::ostringstream page;
    page << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
            "<meta name=\"viewport\" content=\"width=device-width\">\n<title>Kanvo gallery</title>\n<style>"
         << Style << "</style>\n</head>\n<body>\n  <h1>Kanvo gallery</h1>\n"
         << "  <p>Every scene drawn twice: by the portable code, and with the render state's optimised blits allowed. "
            "Both must give the same bytes, except where the scene is about a difference that is documented.</p>\n"
            "  <table>\n    <tr><th>scene</th><th>size</th><th>CRC-32</th><th>portable, ms</th><th>optimised, ms</th>"
            "<th></th></tr>\n";
    for (const Result& result : results)
    {
        WriteRow(page, result);
    }
    page << "  </table>\n";
    for (const Result& result : results)
    {
        WriteSection(page, result, scale);
    }
    page << "</body>\n</html>\n";
    return page.str();
}

std::unique_ptr<Kanvo_BitmapARGB32> Sheet(const std::vector<Result>& results, Kanvo_Screen& screen)
{
    constexpr Tov_UInt Columns = 2;
    constexpr Tov_UInt Gap     = 8;

    Tov_UInt cellWidth  = 0;
    Tov_UInt cellHeight = 0;
    for (const Result& result : results)
    {
        cellWidth  = std::max(cellWidth, result.portable.bitmap->GetWidth());
        cellHeight = std::max(cellHeight, result.portable.bitmap->GetHeight());
    }
    const auto count   = static_cast<Tov_UInt>(results.size());
    const auto columns = std::min(count, Columns);
    const auto rows    = (count + Columns - 1) / Columns;
    auto       sheet   = std::make_unique<Kanvo_BitmapARGB32>(&screen, columns * (cellWidth + Gap) + Gap,
                                                      rows * (cellHeight + Gap) + Gap);
    sheet->Lock();
    sheet->Clear(0xFF05080CU);
    for (Tov_UInt index = 0; index < count; ++index)
    {
        Kanvo_BitmapARGB32& scene = *results[index].portable.bitmap;
        sheet->Blit(&scene, scene.GetWidth(), scene.GetHeight(), 0, 0,
                    static_cast<Tov_Int>(Gap + index % Columns * (cellWidth + Gap)),
                    static_cast<Tov_Int>(Gap + index / Columns * (cellHeight + Gap)), 0, 255, 0);
    }
    sheet->Unlock(0, 0, sheet->GetWidth() - 1, sheet->GetHeight() - 1);
    return sheet;
}

}  // namespace gallery
