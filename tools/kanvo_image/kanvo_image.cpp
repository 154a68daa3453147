// kanvo-image: turns PNG pictures into the images that Kanvo draws, and back. Commands.h shows what lies where.
//
// Exit codes: see Help_Page, which users read too. Whatever goes wrong is one line on stderr.
#include <memory>
#include <new>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "Help_Page.h"
#include "Program_Files.h"
#include "Program_Say.h"

namespace kanvo_image
{
namespace
{

constexpr int UsageCode = 2;

//! What has to be done; nothing after --help.
Action Parse(int count, char** words)
{
    Action   action;
    CLI::App program("", "kanvo-image");
    program.formatter(std::make_shared<HelpPage>());
    for (const auto add : {AddEncode, AddDecode, AddVerify, AddInfo, AddDiff, AddReport})
    {
        add(program, action);
    }
    const auto isNamed = [&](const CLI::App* command) { return command->get_name() == words[1]; };
    if (count > 1 && words[1][0] != '-' && program.get_subcommands(isNamed).empty())
    {
        throw UsageFailure("no such command: " + std::string(words[1]));
    }
    program.require_subcommand(0, 1);
    try
    {
        program.parse(count, words);
    }
    catch (const CLI::CallForHelp&)
    {
        Print(program.help());
        return {[] { return 0; }};
    }
    catch (const CLI::ParseError& error)
    {
        throw UsageFailure(error.what());
    }
    if (action.run == nullptr)
    {
        throw UsageFailure("a command is needed");
    }
    return action;
}

int Main(int count, char** words)
{
    int onFailure = 1;
    try
    {
        const Action action = Parse(count, words);
        onFailure           = action.onFailure;
        return action.run();
    }
    catch (const UsageFailure& failure)
    {
        SayError(failure.what() + std::string(" (--help tells more)"));
        return UsageCode;
    }
    catch (const std::bad_alloc&)
    {
        SayError("not enough memory");
    }
    catch (const std::exception& failure)
    {
        SayError(failure.what());
    }
    return onFailure;
}

}  // namespace
}  // namespace kanvo_image

int main(int count, char** words)
{
    return kanvo_image::Main(count, words);
}
