// kanvo-checksums: prints the list that scenes/CHECKSUMS is to be, as this build draws the scenes. It needs no file and no
// package, so that it can be built for every machine and setting; tools/check_checksums.py does, and compares.
//
// Exit codes: 0 every scene was drawn; 1 a picture or memory was missing, or the library reported misuse.
#include <cstdio>

#include "Scene_BuiltIn.h"

namespace
{

int g_misuses = 0;

void CountMisuse(const char* file, unsigned int line, const char* message)
{
    ++g_misuses;
    std::fprintf(stderr, "%s:%u: %s\n", file, line, message);
}

}  // namespace

int main()
{
    Trak_SetAssertHandler(CountMisuse);
    Kanvo                 library;
    Kanvo_Screen          screen(&library);
    const scenes::BuiltIn pictures(screen);
    if (!pictures.AreThere())
    {
        return 1;
    }
    std::printf("# level: %s\n", Kanvo_LevelName(Kanvo_SelectedRows()));
    for (const scenes::Scene& scene : scenes::All())
    {
        Kanvo_BitmapARGB32 target(&screen, scene.width, scene.height);
        std::puts(scenes::ChecksumLine(scene, target, pictures.Get(), screen).c_str());
    }
    return g_misuses == 0 ? 0 : 1;
}
