// Command_Encode: PNG pictures into stored images and C sources.
// Plans every output first, then takes the pictures one by one. A picture that cannot be read costs itself alone; what
// cannot be written ends the command.
#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "Encoded_Text.h"
#include "Format_Choice.h"
#include "Image_Bleed.h"
#include "Image_CSource.h"
#include "Image_Encode.h"
#include "Image_Trim.h"
#include "Picture_Files.h"
#include "Program_Say.h"
#include "Program_Text.h"

namespace kanvo_image
{
namespace
{

namespace fs = std::filesystem;

struct Arguments
{
    std::vector<std::string> inputs;
    std::string              output;
    std::string              format     = "auto";
    std::size_t              paletteMax = 65536;
    std::string              dither     = "none";
    std::uint32_t            bleed      = 0;
    std::string              name;
    bool                     paletteMaxGiven = false;
    bool                     nameGiven       = false;
    bool                     keepGiven       = false;
    bool                     noKeepGiven     = false;
    bool                     trim            = false;
    bool                     bin             = false;
    bool                     c               = false;
    bool                     h               = false;
    bool                     force           = false;
    bool                     quiet           = false;

    bool ToStream() const { return IsStream(output); }
    bool WantsC() const { return c || h; }
};

const std::map<std::string, image::Dither> Dithers = {
    {"none", image::Dither::None}, {"ordered", image::Dither::Ordered}, {"fs", image::Dither::FloydSteinberg}};

std::vector<std::string> FormatWords()
{
    std::vector<std::string> words;
    for (const image::Format format : image::AllFormats())
    {
        words.emplace_back(image::FormatName(format));
    }
    words.emplace_back("auto");
    return words;
}

// ---- the plan ------------------------------------------------------------------------------------------------------

//! One picture and the files that it becomes; an empty path is not wanted.
struct Job
{
    std::string input;
    std::string cName;
    std::string bin;
    std::string c;
    std::string h;

    std::vector<std::string> Outputs() const
    {
        std::vector<std::string> outputs;
        for (const std::string& output : {bin, c, h})
        {
            if (!output.empty())
            {
                outputs.push_back(output);
            }
        }
        return outputs;
    }
};

//! Options that contradict each other or would do nothing are refused, so that nobody relies on them.
void CheckArguments(const Arguments& arguments)
{
    const std::optional<image::Format> format = image::FormatFromName(arguments.format);
    const bool                         toRle  = format && image::IsRle(*format);
    if (arguments.paletteMaxGiven && !toRle)
    {
        throw UsageFailure("--palette-max: only rle8 and rle16 have a palette, not " + arguments.format);
    }
    if (arguments.keepGiven && !toRle && format)
    {
        throw UsageFailure("--keep-palette: only rle8 and rle16 have a palette, not " + arguments.format);
    }
    if (arguments.dither != "none" && !toRle && format != image::Format::Rgb565)
    {
        throw UsageFailure("--dither: only rle8, rle16 and rgb565 can lose colours gently, not " + arguments.format);
    }
    if (arguments.ToStream() && arguments.bin + arguments.c + arguments.h > 1)
    {
        throw UsageFailure("-o -: one result fits into standard output, choose one of --bin, --c and --h");
    }
    if (arguments.WantsC() && !arguments.name.empty() && !image::IsCName(arguments.name))
    {
        throw UsageFailure("--name: \"" + arguments.name + "\" cannot be the name of an array in C and C++");
    }
    if (arguments.nameGiven && (arguments.name.empty() || fs::path(arguments.name).filename() != arguments.name))
    {
        throw UsageFailure("--name: \"" + arguments.name + "\" is no file name");
    }
}

Job JobFor(const Arguments& arguments, const std::string& input)
{
    Job job;
    job.input              = input;
    const std::string stem = arguments.name.empty() ? fs::path(input).stem().string() : arguments.name;
    job.cName              = arguments.name.empty() ? image::CNameFor(stem) : stem;
    const auto place       = [&](const std::string& file)
    { return arguments.ToStream() ? arguments.output : (fs::path(arguments.output) / file).string(); };

    job.bin = arguments.bin ? place(stem + ".bin") : std::string();
    job.c   = arguments.c ? place(job.cName + ".c") : std::string();
    job.h   = arguments.h ? place(job.cName + ".h") : std::string();
    return job;
}

std::vector<Job> Plan(const Arguments& arguments)
{
    const std::vector<std::string> inputs = FindPictures(arguments.inputs);
    if (inputs.size() > 1 && !arguments.name.empty())
    {
        throw UsageFailure("--name: only for a single picture, not for " + Grouped(inputs.size()));
    }
    if (inputs.size() > 1 && arguments.ToStream())
    {
        throw UsageFailure("-o -: only for a single picture, not for " + Grouped(inputs.size()));
    }

    std::vector<Job>                   jobs;
    std::vector<std::string>           outputs;
    std::map<std::string, std::string> inputOf;
    for (const std::string& input : inputs)
    {
        if (IsStream(input) && arguments.name.empty() && (!arguments.ToStream() || arguments.WantsC()))
        {
            throw UsageFailure("--name is needed for a picture from standard input");
        }
        jobs.push_back(JobFor(arguments, input));
        for (const std::string& output : jobs.back().Outputs())
        {
            const auto [at, isNew] = inputOf.emplace(output, input);
            if (!isNew)
            {
                throw Failure(Shown(at->second) + " and " + Shown(input) + " would both become " + output);
            }
            outputs.push_back(output);
        }
    }
    RequireFree(outputs, arguments.force);
    return jobs;
}

// ---- one picture ---------------------------------------------------------------------------------------------------

struct Result
{
    image::Encoded encoded;
    std::string    outcome;              //!< for people
    image::Fringe  fringe;               //!< what scaling with a filter would show
    bool           translucent = false;  //!< has alpha other than 0 and 255
};

FilePalette PaletteWish(const Arguments& arguments)
{
    return arguments.keepGiven ? FilePalette::Insist : arguments.noKeepGiven ? FilePalette::Drop : FilePalette::Keep;
}

bool HasTranslucent(const std::vector<std::uint32_t>& argb)
{
    return std::any_of(argb.begin(), argb.end(),
                       [](std::uint32_t pixel) { return image::Alpha(pixel) != 0 && image::Alpha(pixel) != 255; });
}

Result Convert(const Arguments& arguments, const std::string& input)
{
    image::Picture picture = LoadPng(input);
    const bool     indexed = picture.IsIndexed();

    Result result;
    if (arguments.trim)
    {
        image::Trimmed trimmed = image::Trim(picture);
        if (trimmed.picture.argb.size() != picture.argb.size())
        {
            result.outcome = "trimmed at (" + std::to_string(trimmed.x) + ", " + std::to_string(trimmed.y) + ") to ";
        }
        picture = std::move(trimmed.picture);
    }
    if (arguments.bleed != 0)
    {
        image::Bleed(picture, arguments.bleed);
    }
    result.fringe      = image::FindFringe(picture);
    result.translucent = HasTranslucent(picture.argb);
    result.outcome += SizeText(picture.width, picture.height) + ", ";

    image::EncodeOptions options;
    options.mostColours     = arguments.paletteMax;
    options.keepFilePalette = !arguments.noKeepGiven;
    options.dither          = Dithers.at(arguments.dither);
    if (arguments.format == "auto")
    {
        const image::Choice choice = ChooseFormat(picture, PaletteWish(arguments));
        result.encoded             = image::Encode(picture, choice.format, options);
        result.outcome += choice.reason;
    }
    else
    {
        result.encoded            = image::Encode(picture, *image::FormatFromName(arguments.format), options);
        const std::string palette = PaletteText(result.encoded);
        result.outcome += arguments.format + ": " + Counted(FileSize(result.encoded), "byte") + ", " + palette +
                          (palette.empty() ? "" : ", ") + FidelityText(result.encoded);
    }
    if (arguments.keepGiven && indexed && result.encoded.origin != image::PaletteOrigin::File)
    {
        throw Failure(Shown(input) + ": its palette cannot be kept" +
                      (picture.IsIndexed() ? ", it has " + Counted(picture.palette.size(), "colour")
                                           : std::string(", --bleed gave it other colours")));
    }
    return result;
}

void Write(const Job& job, const image::Encoded& encoded)
{
    if (!job.bin.empty())
    {
        WriteFile(job.bin, image::FileBytes(encoded));
    }
    if (!job.c.empty())
    {
        WriteFile(job.c, image::CSource(encoded, job.cName, !job.h.empty()));
    }
    if (!job.h.empty())
    {
        WriteFile(job.h, image::CHeader(encoded, job.cName));
    }
}

// ---- all of them ---------------------------------------------------------------------------------------------------

//! What a user should know before drawing. A fringe is warned of where it can be seen, in images that filters scale;
//! what concerns many pictures in the same way is said once.
class Advice
{
public:
    void Look(const std::string& input, const Result& result)
    {
        const bool fringed = result.fringe.texels != 0;
        if (fringed && result.encoded.format == image::Format::Argb32)
        {
            SayWarning(Shown(input) + ": scaling with a filter would show a fringe, from " +
                       Counted(result.fringe.texels, "transparent texel") + " unlike their neighbours, the first at (" +
                       std::to_string(result.fringe.x) + ", " + std::to_string(result.fringe.y) +
                       "); --bleed 1 prevents that");
        }
        if (image::IsRle(result.encoded.format))
        {
            m_fringed += fringed ? 1 : 0;
            m_translucent += result.translucent ? 1 : 0;
        }
    }

    void Say() const
    {
        if (m_fringed != 0)
        {
            SayNote("fringes in " + Counted(m_fringed, "picture") +
                    " if scaled with a filter; RLE images never are, but argb32 ones would need --bleed 1");
        }
        if (m_translucent != 0)
        {
            SayNote("translucent colours in " + Counted(m_translucent, "RLE image") +
                    "; draw with BlitAlpha, as Blit gives them full weight");
        }
    }

private:
    std::size_t m_fringed     = 0;
    std::size_t m_translucent = 0;
};

int Run(const Arguments& arguments)
{
    CheckArguments(arguments);
    const std::vector<Job> jobs = Plan(arguments);

    Progress      progress(jobs.size(), arguments.quiet);
    Advice        advice;
    std::size_t   failed = 0;
    std::uint64_t bytes  = 0;
    for (const Job& job : jobs)
    {
        progress.Begin(Shown(job.input));
        Result result;
        try
        {
            result = Convert(arguments, job.input);
        }
        catch (const Failure& failure)
        {
            SayError(failure.what());
            ++failed;
            continue;
        }
        advice.Look(job.input, result);
        if (!arguments.ToStream())
        {
            MakeFolder(arguments.output);
        }
        Write(job, result.encoded);
        bytes += FileSize(result.encoded);
        progress.Done(Shown(job.input), result.outcome);
    }
    progress.Finish();

    if (!arguments.quiet)
    {
        advice.Say();
    }
    if (failed != 0 && jobs.size() > 1)
    {
        SayError(Grouped(failed) + " of " + Counted(jobs.size(), "picture") + " failed");
    }
    else if (!arguments.quiet && jobs.size() > 1)
    {
        SayNote(Counted(jobs.size(), "picture") + ", " + Counted(bytes, "byte"));
    }
    return failed == 0 ? 0 : 1;
}

}  // namespace

void AddEncode(CLI::App& program, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App*  command   = program.add_subcommand("encode", "turns PNG pictures into stored images and C sources");
    command
        ->add_option("IN", arguments->inputs,
                     "PNG files; folders, which stand for every *.png below them, sorted by name; - for standard "
                     "input.")
        ->required()
        ->type_name("...");
    command
        ->add_option("-o,--output", arguments->output,
                     "The folder for the results, made if missing. The result of a single picture may go to "
                     "standard output, -.")
        ->required()
        ->type_name("DIR");
    command
        ->add_option("--format", arguments->format,
                     "rle8, rle16, argb32, rgb32, rgb565, a8, or auto, which takes the lossless one with the "
                     "smallest file and says why. Without this option: auto.")
        ->check(CLI::IsMember(FormatWords()))
        ->type_name("F");
    CLI::Option* paletteMax =
        command
            ->add_option(
                "--palette-max", arguments->paletteMax,
                "The most colours that an rle8 or rle16 image may have, up to 256 and 65536. Pictures with more "
                "get the best palette of that size; how much they lose is printed.")
            ->check(CLI::Range(1, 65536))
            ->type_name("N");
    CLI::Option* keep = command->add_flag(
        "--keep-palette", "Insist that indexed pictures keep their palette, entry by entry. Without this option they "
                          "keep it where they can.");
    CLI::Option* noKeep =
        command
            ->add_flag("--no-keep-palette", "Give indexed pictures a palette of the colours they use, in the order in "
                                            "which they appear.")
            ->excludes(keep);
    command
        ->add_option("--dither", arguments->dither,
                     "How rle8, rle16 and rgb565 hide that colours are missing: none, ordered (a calm pattern) or "
                     "fs (error diffusion, the finest gradients).")
        ->check(CLI::IsMember(Dithers))
        ->type_name("D");
    command
        ->add_option("--bleed", arguments->bleed,
                     "Spread the colours of visible pixels N pixels into fully transparent ones, 1 to 8192, so that "
                     "scaling with a filter shows no fringe. 1 is enough for the filter of Kanvo.")
        ->check(CLI::Range(1, 8192))
        ->type_name("N");
    command->add_flag("--trim", arguments->trim,
                      "Cut off what is fully transparent all around; where the rest was is printed.");
    command->add_flag("--bin", arguments->bin, "Write IN.bin, the image as a file. Without --bin, --c and --h: this.");
    command->add_flag("--c", arguments->c, "Write image_IN.c, the image as a constant array for C99 and C++11.");
    command->add_flag("--h", arguments->h, "Write image_IN.h, which declares the array and its sizes.");
    CLI::Option* name =
        command
            ->add_option("--name", arguments->name,
                         "Of a single picture: the name of the array, and of all files before their ending.")
            ->type_name("S");
    command->add_flag("-f,--force", arguments->force, "Replace files that are there already.");
    command->add_flag("-q,--quiet", arguments->quiet, "Only warnings and errors on stderr, no progress.");

    command->callback(
        [=, &action]
        {
            arguments->paletteMaxGiven = paletteMax->count() != 0;
            arguments->nameGiven       = name->count() != 0;
            arguments->keepGiven       = keep->count() != 0;
            arguments->noKeepGiven     = noKeep->count() != 0;
            arguments->bin             = arguments->bin || !arguments->WantsC();
            action.run                 = [=] { return Run(*arguments); };
        });
}

}  // namespace kanvo_image
