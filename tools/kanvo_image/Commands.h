// Commands: what kanvo-image can do, a source file for each. Every one adds itself to the command line; when it is the
// one that was asked for, the action is set to what has to be done.
//
//   kanvo_image ──> Command_* ──> Picture_Files ──> Program_Files, Png_Image
//        │              │
//        │              └──> the core in tools/image, the drawing library
//        └──> Help_Page
#ifndef COMMANDS_H
#define COMMANDS_H

#include <functional>

namespace CLI
{
class App;
}

namespace kanvo_image
{

struct Action
{
    std::function<int()> run;            //!< does the work and returns the exit code; throws Failure
    int                  onFailure = 1;  //!< the exit code then
};

void AddEncode(CLI::App& program, Action& action);
void AddDecode(CLI::App& program, Action& action);
void AddVerify(CLI::App& program, Action& action);
void AddInfo(CLI::App& program, Action& action);
void AddDiff(CLI::App& program, Action& action);
void AddReport(CLI::App& program, Action& action);

}  // namespace kanvo_image

#endif
