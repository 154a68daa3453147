// Command_Info: what is inside a file: header, palette, and how the tokens of an RLE image are used.
#include <memory>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "Encoded_Text.h"
#include "Format_Choice.h"
#include "Image_Formats.h"
#include "Picture_Files.h"
#include "Program_Text.h"

namespace kanvo_image
{
namespace
{

constexpr std::size_t PaletteShown = 256;  //!< entries, unless all are asked for

struct Arguments
{
    std::string input;
    bool        wholePalette = false;
};

//! "label       text", a line of the page.
std::string Line(const std::string& label, const std::string& text)
{
    std::string line = label;
    line.resize(17, ' ');
    return line + text + "\n";
}

std::string PixelsText(std::uint32_t width, std::uint32_t height)
{
    return SizeText(width, height) + ", " + Counted(std::uint64_t{width} * height, "pixel");
}

std::string BytesPerPixel(std::uint64_t bytes, std::uint32_t width, std::uint32_t height)
{
    return Fixed(static_cast<double>(bytes) / (static_cast<double>(width) * height), 3);
}

// ---- RLE images ----------------------------------------------------------------------------------------------------

std::string KindsText(const std::vector<std::uint32_t>& palette)
{
    std::size_t kinds[3] = {};
    for (const std::uint32_t colour : palette)
    {
        ++kinds[image::Alpha(colour) == 255 ? 0 : image::Alpha(colour) == 0 ? 2 : 1];
    }
    return Grouped(kinds[0]) + " opaque, " + Grouped(kinds[1]) + " translucent, " + Grouped(kinds[2]) + " transparent";
}

std::string PaletteText(const std::vector<std::uint32_t>& palette, bool whole)
{
    constexpr std::size_t PerLine = 8;

    const std::size_t shown = whole ? palette.size() : std::min(palette.size(), PaletteShown);
    std::string       text  = "\npalette, AARRGGBB\n";
    for (std::size_t entry = 0; entry < shown; entry += PerLine)
    {
        const std::string number = std::to_string(entry);
        text += std::string(6 - std::min<std::size_t>(6, number.size()), ' ') + number;
        for (std::size_t at = entry; at < std::min(entry + PerLine, shown); ++at)
        {
            text += (at == entry ? "  " : " ") + ColourText(palette[at]);
        }
        text += "\n";
    }
    return shown == palette.size()
               ? text
               : text + "        and " + Grouped(palette.size() - shown) + " more; --palette lists all\n";
}

std::string MeanText(std::uint64_t pixels, std::uint64_t tokens)
{
    return tokens == 0 ? "-" : Fixed(static_cast<double>(pixels) / static_cast<double>(tokens), 1);
}

std::string LengthsText(std::uint32_t first, std::uint32_t last)
{
    return first == last ? std::to_string(first) : std::to_string(first) + "-" + std::to_string(last);
}

std::string TokensText(const image::TokenStatistics& tokens)
{
    Table kinds({"tokens", ">number", ">pixels", ">mean length", ">longest"});
    kinds.Add({"runs", Grouped(tokens.runs), Grouped(tokens.runPixels), MeanText(tokens.runPixels, tokens.runs),
               Grouped(tokens.longestRun)});
    kinds.Add({"literals", Grouped(tokens.literals), Grouped(tokens.literalPixels),
               MeanText(tokens.literalPixels, tokens.literals), Grouped(tokens.longestLiteral)});

    Table lengths({"length", ">runs", ">literals"});
    for (std::size_t lengthClass = 0; lengthClass < image::TokenStatistics::Classes; ++lengthClass)
    {
        const std::uint64_t runs     = tokens.runsByLength[lengthClass];
        const std::uint64_t literals = tokens.literalsByLength[lengthClass];
        if (runs + literals != 0)
        {
            const std::uint32_t last = std::min(image::LastOfClass(lengthClass), 65535u);
            lengths.Add({LengthsText(image::FirstOfClass(lengthClass), last), Grouped(runs), Grouped(literals)});
        }
    }
    return "\n" + kinds.Text() + "\n" + lengths.Text();
}

std::string RleText(const std::string& path, const Bytes& bytes, bool wholePalette)
{
    const image::StoredImage stored = image::ReadImage(bytes, LongestSide);
    if (!stored)
    {
        throw Failure(FaultText(path, stored.fault.message, stored.fault.offset));
    }
    const image::Header&          header = stored.header;
    const image::TokenStatistics& tokens = stored.tokens;
    const std::uint32_t           unit   = image::BytesOf(header.unit);
    const std::uint64_t           pixels = std::uint64_t{header.width} * header.height;

    std::string text;
    text += Line("format", "rle" + std::to_string(8 * unit) + ", version " + std::to_string(header.version));
    text += Line("size", PixelsText(header.width, header.height));
    text += Line("artwork", "bits of alpha " + std::to_string(header.alphaBits) + ", red " +
                                std::to_string(header.redBits) + ", green " + std::to_string(header.greenBits) +
                                ", blue " + std::to_string(header.blueBits));
    text += Line("opaque only", header.opaqueOnly ? "yes" : "no");
    text += Line("palette", Counted(header.paletteCount, "colour") + ", " + Grouped(tokens.usedEntries) + " used; " +
                                KindsText(stored.palette));
    text += Line("tokens", "bytes " + std::to_string(header.tokenStart) + " to " + std::to_string(stored.bytes - 1) +
                               ", " + Counted(tokens.units, "unit") + " of " + Counted(unit, "byte"));
    if (stored.endsEarly)
    {
        text += Line("ends early", "after " + Grouped(stored.indices.size()) + " of " + Counted(pixels, "pixel") +
                                       "; the others stay undrawn");
    }
    if (bytes.size() != stored.bytes)
    {
        text += Line("behind the end", Counted(bytes.size() - stored.bytes, "byte") + " that nothing reads");
    }
    text += Line("bytes per pixel", BytesPerPixel(stored.bytes, header.width, header.height) + ", palette included; " +
                                        Percent(stored.bytes, Argb32Size(pixels)) + " of argb32");
    text += Line("worst row", std::to_string(tokens.worstRow) + ", " + Counted(tokens.worstRowUnits * unit, "byte") +
                                  " read for " + Counted(header.width, "pixel"));
    return text + TokensText(tokens) + PaletteText(stored.palette, wholePalette);
}

// ---- the other kinds -----------------------------------------------------------------------------------------------

std::string RawText(const std::string& path, const Bytes& bytes)
{
    const image::RawImage raw = image::ReadRaw(bytes, LongestSide);
    if (!raw)
    {
        throw Failure(FaultText(path, raw.fault.message, raw.fault.offset));
    }
    const image::RawHeader& header = raw.header;

    std::string text;
    text += Line("format", std::string(image::FormatName(header.format)) + ", version " +
                               std::to_string(image::RawHeader::Version));
    text += Line("size", PixelsText(header.width, header.height));
    text += Line("pixels", "from byte " + std::to_string(header.pixelStart) + ", " + Counted(header.pitch, "byte") +
                               " from row to row");
    text += Line("bytes per pixel", BytesPerPixel(bytes.size(), header.width, header.height) + ", header included");
    return text;
}

std::string PngText(const std::string& path, const Bytes& bytes)
{
    const image::Picture picture = DecodePng(path, bytes);

    std::string text;
    text += Line("format", picture.IsIndexed() ? "png, indexed" : "png");
    text += Line("size", PixelsText(picture.width, picture.height));
    if (picture.IsIndexed())
    {
        text += Line("palette", Counted(picture.palette.size(), "colour") + "; " + KindsText(picture.palette));
    }
    const image::Choice choice = ChooseFormat(picture, FilePalette::Keep);
    text += Line("auto", choice.reason);
    Table sizes({"\nformat", ">bytes", ">of argb32", "lossless"});
    for (const image::Candidate& candidate : choice.candidates)
    {
        const bool known = candidate.bytes != 0;  // a palette that has yet to be chosen has no size
        sizes.Add({image::FormatName(candidate.format), known ? Grouped(candidate.bytes) : "-",
                   known ? Percent(candidate.bytes, Argb32Size(picture.argb.size())) : "-",
                   candidate.lossless ? "yes" : "no"});
    }
    return text + sizes.Text();
}

int Run(const Arguments& arguments)
{
    const Bytes bytes = ReadFile(arguments.input);

    std::string text = Line("file", Shown(arguments.input) + ", " + Counted(bytes.size(), "byte"));
    if (IsPng(bytes))
    {
        text += PngText(arguments.input, bytes);
    }
    else if (image::KindOf(bytes.data(), bytes.size()) == image::FileKind::Raw)
    {
        text += RawText(arguments.input, bytes);
    }
    else
    {
        text += RleText(arguments.input, bytes, arguments.wholePalette);
    }
    Print(text);
    return 0;
}

}  // namespace

void AddInfo(CLI::App& program, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App*  command =
        program.add_subcommand("info", "prints what is in a stored image, or what a PNG file would become");
    command->add_option("IN", arguments->input, "A stored image or a PNG file; - for standard input.")
        ->required()
        ->type_name("");
    command->add_flag("--palette", arguments->wholePalette,
                      "List the whole palette, not only its first " + std::to_string(PaletteShown) + " colours.");
    command->callback([=, &action] { action.run = [=] { return Run(*arguments); }; });
}

}  // namespace kanvo_image
