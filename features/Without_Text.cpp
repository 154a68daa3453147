// Without_Text: the debug font in a library that was built without it (KANVO_WITH_TEXT): it has no characters.
#include "Kanvo_DebugFont.h"

Tov_Bool DebugFont_GetChar(unsigned char, const Tov_UByte*&, Tov_Int&, Tov_Int&)
{
    return false;
}
