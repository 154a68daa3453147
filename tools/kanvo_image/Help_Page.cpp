// Help_Page: see the header. The examples are run by a test, one after the other, in a folder with photo.png, icon.png
// and a folder "pictures"; a line ending in "exit status N:" announces one that does not exit with 0.
#include "Help_Page.h"

#include <vector>

namespace kanvo_image
{
namespace
{

constexpr std::size_t PageWidth = 79;

constexpr const char* About = "kanvo-image - turns PNG pictures into the images that Kanvo draws, and back";

struct Synopsis
{
    const char* command;
    const char* words;
};

constexpr Synopsis Synopses[] = {
    {"encode", "IN... -o DIR [--format F] [--palette-max N] [--keep-palette | --no-keep-palette] [--dither D] "
               "[--bleed N] [--trim] [--bin] [--c] [--h] [--name S] [-f] [-q]"},
    {"decode", "IN -o OUT.png [-f]"},
    {"verify", "IN... [-q]"},
    {"info", "IN [--palette]"},
    {"diff", "A B [-o HEAT.png] [-f]"},
    {"report", "DIR [--csv FILE] [--html FILE] [-f] [-q]"},
};

constexpr const char* Examples = R"(EXAMPLES
    Every picture below a folder, each in its smallest lossless format:
        $ kanvo-image encode pictures -o out

    A photograph in 64 colours, dithered, and how it differs; exit status 1:
        $ kanvo-image encode photo.png -o out --format rle8 --palette-max 64 --dither fs
        $ kanvo-image diff photo.png out/photo.bin -o heat.png

    An icon as C source and header, with an array called gear:
        $ kanvo-image encode icon.png -o generated --format rle8 --c --h --name gear

    A texture to be scaled with a filter, with no fringe and no empty border:
        $ kanvo-image encode icon.png -o textures --format argb32 --bleed 2 --trim

    Through a pipe, and back again:
        $ cat icon.png | kanvo-image encode - -o - --format rle16 > icon.bin
        $ kanvo-image decode icon.bin -o again.png
        $ kanvo-image diff icon.png again.png

    Looking at results before they are shipped:
        $ kanvo-image verify out/*.bin icon.bin
        $ kanvo-image info icon.bin

    What would which format cost?
        $ kanvo-image report pictures --csv sizes.csv --html sizes.html
)";

constexpr const char* ExitStatus = R"(EXIT STATUS
    0   Done. verify: every image can be drawn. diff: the pictures are equal.
    1   A file cannot be read or understood (the command's other pictures are
        done all the same), cannot be written, or is in the way. verify: an
        image cannot be drawn. diff: the pictures differ.
    2   The command line is wrong. diff: any failure.

    Every error is one line on stderr.
)";

constexpr const char* Notes = R"(NOTES
    The same input gives the same bytes, on every machine: no time, path or
    locale gets into a result. Drawing times appear in reports only.

    Files appear complete or not at all. A file that exists is replaced with
    --force only; that is checked for all results before the first is written.

    Images that end before their last pixel are drawn as far as they go: verify
    warns of them, and the missing pixels count as transparent.
)";

constexpr const char* Limits = R"(LIMITS
    Pictures    8192 x 8192 pixels, which is 64 Mpixel; verify also takes stored
                images up to the library's own 32767 x 32767
    Palettes    256 colours (rle8), 65536 colours (rle16)
    Files       1 GiB
)";

std::string Indent(std::size_t places)
{
    return std::string(places, ' ');
}

//! Breaks text into lines: the first begins where it stands, at column `used`, the others at `indent`.
std::string Wrapped(const std::string& text, std::size_t used, std::size_t indent)
{
    std::string result;
    std::size_t column = used;
    std::size_t at     = 0;
    while (at < text.size())
    {
        // A bracketed word stays whole.
        const std::size_t close = text[at] == '[' ? text.find(']', at) : at;
        const std::size_t end   = std::min(text.find(' ', close), text.size());
        const std::string word  = text.substr(at, end - at);
        const bool        first = column == used && result.empty();
        if (!first && column + 1 + word.size() > PageWidth)
        {
            result += "\n" + Indent(indent) + word;
            column = indent + word.size();
        }
        else
        {
            result += (first ? "" : " ") + word;
            column += word.size() + (first ? 0 : 1);
        }
        at = end + 1;
    }
    return result + "\n";
}

std::string SynopsisLine(const Synopsis& synopsis)
{
    const std::string start = Indent(4) + "kanvo-image " + synopsis.command + " ";
    return start + Wrapped(synopsis.words, start.size(), start.size());
}

//! Every option of a command, its help aside.
std::string OptionLines(const CLI::App* command, std::size_t indent)
{
    std::string text;
    for (const CLI::Option* option : command->get_options())
    {
        if (option == command->get_help_ptr())
        {
            continue;
        }
        std::string names = option->get_positional() ? option->get_name(true) : option->get_name(false, true);
        for (std::size_t comma = names.find(','); comma != std::string::npos; comma = names.find(',', comma + 2))
        {
            names.insert(comma + 1, " ");
        }
        const std::string type  = option->get_type_name();  // behind a colon: what the checks want
        const std::string value = type.substr(0, type.find(':'));
        text += Indent(indent) + names + (value.empty() || value == "..." ? value : " " + value) + "\n" +
                Indent(indent + 4) + Wrapped(option->get_description(), indent + 4, indent + 4);
    }
    return text;
}

std::string ProgramPage(const CLI::App* program)
{
    const std::vector<const CLI::App*> commands = program->get_subcommands({});

    std::string page = std::string("NAME\n    ") + About + "\n\nSYNOPSIS\n";
    for (const Synopsis& synopsis : Synopses)
    {
        page += SynopsisLine(synopsis);
    }
    page += "    kanvo-image [COMMAND] --help\n\nCOMMANDS\n";
    for (const CLI::App* command : commands)
    {
        page += Indent(4) + command->get_name() + Indent(8 - command->get_name().size()) +
                Wrapped(command->get_description(), 12, 12);
    }
    page += "\nOPTIONS\n";
    for (const CLI::App* command : commands)
    {
        page += Indent(4) + command->get_name() + "\n" + OptionLines(command, 8) + "\n";
    }
    return page + Examples + "\n" + ExitStatus + "\n" + Notes + "\n" + Limits;
}

std::string CommandPage(const CLI::App* command)
{
    std::string page =
        "NAME\n    kanvo-image " + command->get_name() + " - " + command->get_description() + "\n\nSYNOPSIS\n";
    for (const Synopsis& synopsis : Synopses)
    {
        page += synopsis.command == command->get_name() ? SynopsisLine(synopsis) : "";
    }
    return page + "\nOPTIONS\n" + OptionLines(command, 4) +
           "\nkanvo-image --help has examples, exit statuses and limits.\n";
}

}  // namespace

std::string HelpPage::make_help(const CLI::App* app, std::string, CLI::AppFormatMode) const
{
    return app->get_parent() == nullptr ? ProgramPage(app) : CommandPage(app);
}

}  // namespace kanvo_image
