// board-gallery: draws every scene on the screen of the board and prints the list that scenes/CHECKSUMS is to be.
//
//   board-gallery          one scene after the other
//   board-gallery --step   waits after each for a byte from the serial line (board/screenshots.py takes a picture)
//   board-gallery --fault  reads where nothing is, to see the report and the exit status 104
//
// Exit codes: 0 every scene was drawn; 1 a picture or memory was missing, or the library reported misuse.
#include <cstdio>
#include <cstring>
#include <string>

#include "Board.h"
#include "Scene_BuiltIn.h"

namespace
{

constexpr Tov_UInt Around = 0xFF203040;  // what is on the screen beside the scene

int g_misuses = 0;

void CountMisuse(const char* file, unsigned int line, const char* message)
{
    ++g_misuses;
    std::fprintf(stderr, "%s:%u: %s\n", file, line, message);
}

//! Puts a drawn scene in the middle of the screen.
void Show(Kanvo_BitmapARGB32& shown, Kanvo_BitmapARGB32& drawn)
{
    const Tov_UInt width  = drawn.GetWidth();
    const Tov_UInt height = drawn.GetHeight();
    shown.Lock();
    shown.Clear(Around);
    shown.Blit(&drawn, width, height, 0, 0,
               (static_cast<Tov_Int>(board::ScreenWidth) - static_cast<Tov_Int>(width)) / 2,
               (static_cast<Tov_Int>(board::ScreenHeight) - static_cast<Tov_Int>(height)) / 2, 0, 255, 0);
    shown.Unlock(0, 0, board::ScreenWidth - 1, board::ScreenHeight - 1);
    board::CleanCache(shown.GetBuffer(), board::ScreenHeight * shown.GetPitch());
}

}  // namespace

int main(int argc, char** argv)
{
    const bool step = argc > 1 && std::strcmp(argv[1], "--step") == 0;
    if (argc > 1 && std::strcmp(argv[1], "--fault") == 0)
    {
        std::printf("%u\n", static_cast<unsigned>(*reinterpret_cast<volatile std::uint32_t*>(argc - 2)));
    }
    Trak_SetAssertHandler(CountMisuse);
    board::StartDisplay();
    Kanvo                 library;
    Kanvo_Screen          screen(&library);
    const scenes::BuiltIn pictures(screen);
    if (!pictures.AreThere())
    {
        return 1;
    }
    std::printf("# level: %s\n", Kanvo_LevelName(Kanvo_SelectedRows()));
    Kanvo_BitmapARGB32 shown(&screen, board::ScreenWidth, board::ScreenHeight, BBT_RAM, board::Screen());
    for (const scenes::Scene& scene : scenes::All())
    {
        Kanvo_BitmapARGB32 target(&screen, scene.width, scene.height);
        const std::string  line = scenes::ChecksumLine(scene, target, pictures.Get(), screen);
        Show(shown, target);
        std::puts(line.c_str());
        std::fflush(stdout);
        if (step)
        {
            board::ReadSerial();
        }
    }
    return g_misuses == 0 ? 0 : 1;
}
