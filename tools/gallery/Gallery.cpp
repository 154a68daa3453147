// kanvo-gallery: draws every scene into PNG files and a page to look at them.
// Load, draw, write, in this order: nothing is written before everything has been drawn. Gallery_Pictures loads,
// Gallery_Render draws, Gallery_Page lays out, Png_Image writes.
//
// Exit codes: 0 done; 1 a file cannot be read or written, or a scene is not as it should be; 2 the command line is wrong.
// Every failure is one line on stderr.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "Gallery_Page.h"
#include "Gallery_Pictures.h"
#include "Gallery_Render.h"
#include "Png_Image.h"

namespace
{

struct Options
{
    std::string              folder;
    std::vector<std::string> own;
    std::string              pictures =
        (std::filesystem::path(__FILE__).parent_path() / "../../scenes/pictures").lexically_normal().string();
    std::vector<std::string> only;
    std::string              sheet;
    std::string              checksums;
    int                      scale = 2;
};

int Fail(const std::string& line)
{
    std::fprintf(stderr, "kanvo-gallery: %s\n", line.c_str());
    return 1;
}

std::vector<std::string> SceneNames()
{
    std::vector<std::string> names;
    for (const scenes::Scene& scene : scenes::All())
    {
        names.emplace_back(scene.name);
    }
    return names;
}

//! The options of this run, or nothing and the code to leave with.
bool Parse(int argc, char** argv, Options& options, int& exitCode)
{
    CLI::App app("Draws every scene twice, with the optimised blits forbidden and allowed, into OUTDIR, and writes\n"
                 "index.html there to compare them. Pictures may have up to 8192 x 8192 pixels.",
                 "kanvo-gallery");
    app.add_option("OUTDIR", options.folder, "folder to write to, made if missing")->required()->type_name("");
    app.add_option("my.png", options.own, "pictures of your own, each drawn by the last scene")->type_name("");
    app.add_option("--pictures", options.pictures, "folder of the scenes' own pictures")
        ->capture_default_str()
        ->type_name("DIR");
    app.add_option("--scene", options.only, "draw this scene only; may be repeated")
        ->allow_extra_args(false)
        ->check(CLI::IsMember(SceneNames()))
        ->type_name("NAME");
    app.add_option("--scale", options.scale, "magnification of the pictures on the page")
        ->capture_default_str()
        ->check(CLI::Range(1, 8))
        ->type_name("N");
    app.add_option("--sheet", options.sheet, "also write one PNG of all drawn scenes, in two columns")
        ->type_name("FILE");
    app.add_option("--checksums", options.checksums, "also write a list of size and checksums of every drawn scene")
        ->type_name("FILE");
    try
    {
        app.parse(argc, argv);
        return true;
    }
    catch (const CLI::Success& success)
    {
        exitCode = app.exit(success);
    }
    catch (const CLI::ParseError& error)
    {
        Fail(std::string(error.what()) + " (--help tells more)");
        exitCode = 2;
    }
    return false;
}

//! A scene to draw, and with which of the own pictures.
struct Task
{
    const scenes::Scene* scene;
    std::string          name;
    std::size_t          own;
};

std::vector<Task> TasksOf(const Options& options)
{
    std::vector<Task> tasks;
    for (const scenes::Scene& scene : scenes::All())
    {
        if (!options.only.empty() &&
            std::find(options.only.begin(), options.only.end(), scene.name) == options.only.end())
        {
            continue;
        }
        tasks.push_back({&scene, scene.name, 0});
        for (std::size_t own = 1; &scene == &scenes::Own() && own < options.own.size(); ++own)
        {
            tasks.push_back({&scene, std::string(scene.name) + "_" + std::to_string(own + 1), own});
        }
    }
    return tasks;
}

void PrintLine(std::size_t number, std::size_t count, const gallery::Result& result)
{
    const std::string portable  = gallery::ChecksumText(result.portable.checksum);
    const std::string optimised = gallery::ChecksumText(result.optimised.checksum);
    std::printf("[%2zu/%2zu] %-16s %s  %s  portable %6s ms  optimised %6s ms  %s%s\n", number, count,
                result.name.c_str(), gallery::SizeText(*result.portable.bitmap).c_str(), portable.c_str(),
                gallery::MillisecondsText(result.portable.milliseconds).c_str(),
                gallery::MillisecondsText(result.optimised.milliseconds).c_str(), result.Verdict().c_str(),
                portable == optimised ? "" : (", " + optimised).c_str());
    std::fflush(stdout);
}

std::string SaveBitmap(const std::string& path, const Kanvo_BitmapARGB32& bitmap, bool keepAlpha)
{
    return png::Save(path, static_cast<const std::uint32_t*>(bitmap.GetBuffer()), bitmap.GetWidth(), bitmap.GetHeight(),
                     bitmap.GetPitch(), keepAlpha);
}

//! The file appears complete or not at all.
std::string SaveText(const std::string& path, const std::string& text)
{
    const std::string neighbour = path + ".part";
    std::ofstream     stream(neighbour, std::ios::binary);
    stream << text;
    stream.close();
    std::error_code error;
    if (stream)
    {
        std::filesystem::rename(neighbour, path, error);
    }
    if (!stream || error)
    {
        const std::string reason = error ? error.message() : std::strerror(errno);
        std::filesystem::remove(neighbour, error);
        return path + ": " + reason;
    }
    return {};
}

//! What every machine, compiler and setting must draw: one line per scene.
std::string ChecksumList(const std::vector<gallery::Result>& results)
{
    std::string list =
        "# scene, size, checksum of the portable and of the optimised path; written by kanvo-gallery --checksums\n";
    for (const gallery::Result& result : results)
    {
        list += result.name + "  " + gallery::SizeText(*result.portable.bitmap) + "  " +
                gallery::ChecksumText(result.portable.checksum) + "  " +
                gallery::ChecksumText(result.optimised.checksum) + "\n";
    }
    return list;
}

//! Writes both pictures of every result, then the page, the sheet and the list. Returns an empty text or the failure.
std::string WriteAll(const Options& options, const std::vector<gallery::Result>& results, Kanvo_Screen& screen)
{
    std::error_code error;
    std::filesystem::create_directories(options.folder, error);
    if (error)
    {
        return options.folder + ": " + error.message();
    }
    const std::string folder = options.folder + "/";
    for (const gallery::Result& result : results)
    {
        for (const auto& [file, rendering] : {std::pair{gallery::PortableFile(result), &result.portable},
                                              std::pair{gallery::OptimisedFile(result), &result.optimised}})
        {
            std::string failure = SaveBitmap(folder + file, *rendering->bitmap, true);
            if (!failure.empty())
            {
                return failure;
            }
        }
    }
    std::string failure = SaveText(folder + "index.html", gallery::Page(results, options.scale));
    if (failure.empty() && !options.sheet.empty())
    {
        failure = SaveBitmap(options.sheet, *gallery::Sheet(results, screen), false);
    }
    if (failure.empty() && !options.checksums.empty())
    {
        failure = SaveText(options.checksums, ChecksumList(results));
    }
    return failure;
}

int Run(int argc, char** argv)
{
    Options options;
    int     exitCode = 0;
    if (!Parse(argc, argv, options, exitCode))
    {
        return exitCode;
    }

    Kanvo             library;
    Kanvo_Screen      screen(&library);
    gallery::Pictures pictures(screen);
    std::string       failure = pictures.LoadAll(options.pictures);
    for (const std::string& path : options.own)
    {
        failure = failure.empty() ? pictures.LoadOwn(path) : failure;
    }
    if (!failure.empty())
    {
        return Fail(failure);
    }

    const std::vector<Task>      tasks = TasksOf(options);
    std::vector<gallery::Result> results(tasks.size());
    for (std::size_t index = 0; index < tasks.size(); ++index)
    {
        const Task& task = tasks[index];
        failure = gallery::Render(*task.scene, task.name, pictures.InputWithOwn(task.own), screen, results[index]);
        if (!failure.empty())
        {
            return Fail(failure);
        }
        PrintLine(index + 1, tasks.size(), results[index]);
    }

    failure = WriteAll(options, results, screen);
    if (!failure.empty())
    {
        return Fail(failure);
    }
    std::printf("%zu pictures and %s/index.html\n", 2 * results.size(), options.folder.c_str());
    for (const gallery::Result& result : results)
    {
        if (!result.AsDocumented())
        {
            return Fail(result.name + ": the optimised path drew other pixels (" + result.Verdict() + ")");
        }
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    try
    {
        return Run(argc, argv);
    }
    catch (const std::exception& exception)  // memory, most likely
    {
        std::fprintf(stderr, "kanvo-gallery: %s\n", exception.what());
        return 1;
    }
}
