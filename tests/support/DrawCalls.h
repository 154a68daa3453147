// DrawCalls: every drawing operation of Kanvo_Bitmap once, with arguments that would draw if they could. For the rules
// that hold for all of them: what they assert on a bitmap that is not locked, has no buffer or is no target, and what
// they leave alone.
#ifndef DRAWCALLS_H
#define DRAWCALLS_H

#include <vector>

#include "Kanvo_Bitmap.h"

namespace support
{

struct DrawCall
{
    const char* name;
    //! Draws into target. source is at least 4 x 4 pixels; it serves as picture, and as alpha map where one is taken.
    void (*call)(Kanvo_Bitmap& target, Kanvo_Bitmap& source);
};

//! All of them but DebugFontChar and the text operations, which report nothing.
const std::vector<DrawCall>& DrawCalls();

}  // namespace support

#endif
