// Command_Verify: whether stored images can be drawn. Images that the library draws itself are judged by its own check,
// Kanvo_CheckImage, so that what passes here passes on the device.
#include <memory>
#include <vector>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "Image_Formats.h"
#include "Kanvo.h"
#include "Picture_Files.h"
#include "Program_Say.h"
#include "Program_Text.h"

namespace kanvo_image
{
namespace
{

struct Arguments
{
    std::vector<std::string> inputs;
    bool                     quiet = false;
};

//! What to say of a good one.
std::string VerifyRle(const std::string& path, const Bytes& bytes)
{
    const Kanvo_ImageReport report = Kanvo_CheckImage(bytes.data(), bytes.size());
    const std::string       fault  = FaultText(path, Kanvo_ImageFaultText(report.eFault), report.uiOffset);
    if (!report.IsUsable())
    {
        throw Failure(fault);
    }
    if (report.eFault != IMAGE_GOOD)
    {
        SayWarning(fault);
    }
    const auto* info = reinterpret_cast<const Kanvo_PrecompiledImageInfo*>(bytes.data());
    return "rle" + std::to_string(info->ubRLEBits) + ", " + SizeText(info->uiWidth, info->uiHeight) + ", " +
           Counted(info->uiPaletteColorCount, "colour");
}

std::string VerifyRaw(const std::string& path, const Bytes& bytes)
{
    const image::RawImage raw = image::ReadRaw(bytes);
    if (!raw)
    {
        throw Failure(FaultText(path, raw.fault.message, raw.fault.offset));
    }
    return std::string(image::FormatName(raw.header.format)) + ", " + SizeText(raw.header.width, raw.header.height);
}

std::string Verify(const std::string& path)
{
    const Bytes bytes = ReadFile(path);
    return image::KindOf(bytes.data(), bytes.size()) == image::FileKind::Raw ? VerifyRaw(path, bytes)
                                                                             : VerifyRle(path, bytes);
}

int Run(const Arguments& arguments)
{
    int         exitCode = 0;
    std::string good;
    for (const std::string& path : arguments.inputs)
    {
        try
        {
            good += Shown(path) + ": good, " + Verify(path) + "\n";
        }
        catch (const Failure& failure)
        {
            SayError(failure.what());
            exitCode = 1;
        }
    }
    if (!arguments.quiet)
    {
        Print(good);
    }
    return exitCode;
}

}  // namespace

void AddVerify(CLI::App& program, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App*  command =
        program.add_subcommand("verify", "checks whether stored images can be drawn; names the first wrong byte");
    command->add_option("IN", arguments->inputs, "Stored images; - for standard input.")->required()->type_name("...");
    command->add_flag("-q,--quiet", arguments->quiet, "Say nothing of good images.");
    command->callback([=, &action] { action.run = [=] { return Run(*arguments); }; });
}

}  // namespace kanvo_image
