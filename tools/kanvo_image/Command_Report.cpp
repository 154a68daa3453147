// Command_Report: pictures in every format: how large, how faithful, how fast. Report_Page lays it out.
#include <filesystem>
#include <memory>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "Draw_Time.h"
#include "Encoded_Text.h"
#include "Format_Choice.h"
#include "Image_Encode.h"
#include "Picture_Files.h"
#include "Program_Say.h"
#include "Program_Text.h"
#include "Report_Page.h"
#include "Thumbnail.h"

namespace kanvo_image
{
namespace
{

namespace fs = std::filesystem;

constexpr std::uint32_t ThumbnailSide = 160;

struct Arguments
{
    std::string folder;
    std::string csv;
    std::string html;
    bool        force = false;
    bool        quiet = false;
};

std::string ColoursText(const image::Picture& picture)
{
    constexpr std::size_t Most = 65536;

    const auto exact = image::ExactPalette(picture.argb, Most, image::Hidden::Keep);
    return exact ? Grouped(exact->palette.size()) : "over " + Grouped(Most);
}

PictureReport Report(const std::string& path, const std::string& name, bool wantsThumbnail)
{
    const image::Picture picture = LoadPng(path);

    PictureReport report{};
    report.name     = name;
    report.width    = picture.width;
    report.height   = picture.height;
    report.colours  = ColoursText(picture);
    report.smallest = ChooseFormat(picture, FilePalette::Keep).format;
    for (const image::Format format : image::AllFormats())
    {
        const image::Encoded encoded = image::Encode(picture, format);
        report.entries.push_back({format, FileSize(encoded), DrawTime(encoded), encoded.error});
    }
    if (wantsThumbnail)
    {
        report.thumbnail = EncodePng(Thumbnail(picture, ThumbnailSide));
    }
    return report;
}

//! What a picture is called, whichever way the folder was given.
std::string NameOf(const std::string& path, const std::string& folder)
{
    const fs::path relative = fs::path(path).lexically_relative(folder);
    return OneLine(relative.empty() || relative == "." ? fs::path(path).filename().string() : relative.string());
}

int Run(const Arguments& arguments)
{
    std::vector<std::string> outputs;
    for (const std::string& output : {arguments.csv, arguments.html})
    {
        if (!output.empty())
        {
            outputs.push_back(output);
        }
    }
    RequireFree(outputs, arguments.force);
    const std::vector<std::string> paths = FindPictures({arguments.folder});

    Progress                   progress(paths.size(), arguments.quiet);
    std::vector<PictureReport> reports;
    for (const std::string& path : paths)
    {
        const std::string name = NameOf(path, arguments.folder);
        progress.Begin(name);
        try
        {
            reports.push_back(Report(path, name, !arguments.html.empty()));
            progress.Done(name, SizeText(reports.back().width, reports.back().height));
        }
        catch (const Failure& failure)
        {
            SayError(failure.what());
        }
    }
    progress.Finish();

    if (!arguments.csv.empty())
    {
        WriteFile(arguments.csv, ReportCsv(reports));
    }
    if (!arguments.html.empty())
    {
        WriteFile(arguments.html, ReportHtml(reports));
    }
    if (!IsStream(arguments.csv) && !IsStream(arguments.html) && !reports.empty())
    {
        Print(ReportTable(reports));
    }
    return reports.size() == paths.size() ? 0 : 1;
}

}  // namespace

void AddReport(CLI::App& program, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App*  command =
        program.add_subcommand("report", "compares sizes, drawing times and errors of pictures in every format");
    command
        ->add_option("DIR", arguments->folder,
                     "A folder, which stands for every *.png below it, or a PNG file. Pictures are drawn whole and "
                     "unscaled, and blended where they have alpha and the format keeps it.")
        ->required()
        ->type_name("");
    command
        ->add_option("--csv", arguments->csv,
                     "Also write the table as CSV, one line for each picture and format. With - it goes to standard "
                     "output, in place of the table.")
        ->type_name("FILE");
    command->add_option("--html", arguments->html, "Also write a page with thumbnails, one file; - as with --csv.")
        ->type_name("FILE");
    command->add_flag("-f,--force", arguments->force, "Replace these files if they are there already.");
    command->add_flag("-q,--quiet", arguments->quiet, "No progress on stderr.");
    command->callback([=, &action] { action.run = [=] { return Run(*arguments); }; });
}

}  // namespace kanvo_image
