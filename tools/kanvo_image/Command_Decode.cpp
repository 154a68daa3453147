// Command_Decode: a stored image back into a PNG file.
#include <memory>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "Picture_Files.h"

namespace kanvo_image
{
namespace
{

struct Arguments
{
    std::string input;
    std::string output;
    bool        force = false;
};

int Run(const Arguments& arguments)
{
    RequireFree({arguments.output}, arguments.force);
    const AnyPicture loaded = LoadAny(arguments.input);
    if (loaded.kind == "png")
    {
        throw Failure(Shown(arguments.input) + ": a PNG file already");
    }
    SavePng(arguments.output, loaded.picture);
    return 0;
}

}  // namespace

void AddDecode(CLI::App& program, Action& action)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App*  command   = program.add_subcommand("decode", "turns a stored image back into a PNG file");
    command->add_option("IN", arguments->input, "A stored image; - for standard input.")->required()->type_name("");
    command->add_option("-o,--output", arguments->output, "The PNG file to write; - for standard output.")
        ->required()
        ->type_name("OUT.png");
    command->add_flag("-f,--force", arguments->force, "Replace the file if it is there already.");
    command->callback([=, &action] { action.run = [=] { return Run(*arguments); }; });
}

}  // namespace kanvo_image
