// Command_Diff: how far two pictures are apart, stored images and PNG files in any mixture.
#include <algorithm>
#include <memory>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "Image_Difference.h"
#include "Picture_Files.h"
#include "Program_Text.h"

namespace kanvo_image
{
namespace
{

constexpr int Equal     = 0;
constexpr int Different = 1;
constexpr int Error     = 2;  //!< must not look like a difference

struct Arguments
{
    std::string first;
    std::string second;
    std::string heatMap;
    bool        force = false;
};

std::string AboutText(const std::string& path, const AnyPicture& loaded)
{
    return Shown(path) + ": " + loaded.kind + ", " + SizeText(loaded.picture.width, loaded.picture.height) + "\n";
}

//! The smallest rectangle around all differing pixels; there are some.
std::string BoxText(const image::Picture& first, const image::Picture& second)
{
    std::uint32_t left = first.width, top = first.height, right = 0, bottom = 0;
    for (std::uint32_t y = 0; y < first.height; ++y)
    {
        for (std::uint32_t x = 0; x < first.width; ++x)
        {
            const std::size_t at = std::size_t{y} * first.width + x;
            if (first.argb[at] != second.argb[at])
            {
                left   = std::min(left, x);
                right  = std::max(right, x);
                top    = std::min(top, y);
                bottom = y;
            }
        }
    }
    return "(" + std::to_string(left) + ", " + std::to_string(top) + ") to (" + std::to_string(right) + ", " +
           std::to_string(bottom) + ")";
}

std::string DifferenceTable(const image::Difference& difference)
{
    constexpr const char* Names[] = {"alpha", "red", "green", "blue"};

    Table table({"channel", ">largest", ">mean"});
    for (int channel = 0; channel < 4; ++channel)
    {
        table.Add(
            {Names[channel], std::to_string(difference.largest[channel]), MilliText(difference.MeanMilli(channel))});
    }
    table.Add({"visible", MilliText(difference.LargestSeenMilli()), MilliText(difference.MeanSeenMilli())});
    return table.Text();
}

int Run(const Arguments& arguments)
{
    if (!arguments.heatMap.empty())
    {
        RequireFree({arguments.heatMap}, arguments.force);
    }
    if (IsStream(arguments.first) && IsStream(arguments.second))
    {
        throw UsageFailure("standard input holds one picture, not both");
    }
    const AnyPicture      a      = LoadAny(arguments.first);
    const AnyPicture      b      = LoadAny(arguments.second);
    const image::Picture& first  = a.picture;
    const image::Picture& second = b.picture;

    std::string text = AboutText(arguments.first, a) + AboutText(arguments.second, b);
    if (first.width != second.width || first.height != second.height)
    {
        Print(text + "different sizes\n");
        return Different;
    }
    const image::Difference difference = image::Compare(first, second);
    if (difference.IsNone())
    {
        text += "equal, " + Counted(difference.pixels, "pixel") + "\n";
    }
    else
    {
        text += Grouped(difference.differing) + " of " + Counted(difference.pixels, "pixel") + " differ (" +
                Percent(difference.differing, difference.pixels) + "), from " + BoxText(first, second) + "\n";
        if (difference.largestSeen == 0)
        {
            text += "in colours of fully transparent pixels only, which nobody sees\n";
        }
        else
        {
            text += "most at (" + std::to_string(difference.worstX) + ", " + std::to_string(difference.worstY) + ")\n";
        }
        text += "\n" + DifferenceTable(difference);
    }
    if (!arguments.heatMap.empty())
    {
        SavePng(arguments.heatMap, image::HeatMap(first, second));
    }
    if (!IsStream(arguments.heatMap))
    {
        Print(text);
    }
    return difference.IsNone() ? Equal : Different;
}

}  // namespace

void AddDiff(CLI::App& program, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App*  command =
        program.add_subcommand("diff", "compares two pictures, PNG files and stored images in any mixture");
    command->add_option("A", arguments->first, "A picture; - for standard input.")->required()->type_name("");
    command->add_option("B", arguments->second, "Another one of the same size.")->required()->type_name("");
    command
        ->add_option("-o,--output", arguments->heatMap,
                     "Also write a PNG file that shows where they differ: grey where they are equal, from blue to red "
                     "where they are not. With - it goes to standard output, in place of the text.")
        ->type_name("HEAT.png");
    command->add_flag("-f,--force", arguments->force, "Replace that file if it is there already.");
    command->callback(
        [=, &action]
        {
            action.run       = [=] { return Run(*arguments); };
            action.onFailure = Error;
        });
}

}  // namespace kanvo_image
