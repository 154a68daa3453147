// Without_Lines: the workers of lines and dots in a library that was built without them (KANVO_WITH_LINES).
#include "Kanvo_Linedraw.h"
#include "Trak_Assert.h"

template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
void Kanvo_Linedraw<PixelType, OffsetType, Access, PATTERNS>::Draw(Kanvo_Bitmap*, const Kanvo_Vector2&,
                                                                   const Kanvo_Vector2&, Kanvo_Color, Tov_Flag,
                                                                   Tov_Value, Tov_Value)
{
    TRAK_CHECK(false, "lines are not part of this library");
}

template <class PixelType, class OffsetType, class Access, Tov_Bool PATTERNS>
void Kanvo_Linedraw<PixelType, OffsetType, Access, PATTERNS>::DrawDot(Kanvo_Bitmap*, Tov_Value, Tov_Value, Tov_Value,
                                                                      Kanvo_Color, Tov_Flag)
{
    TRAK_CHECK(false, "dots are not part of this library");
}

template void Kanvo_Linedraw<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access, true>::Draw(
    Kanvo_Bitmap*, const Kanvo_Vector2&, const Kanvo_Vector2&, Kanvo_Color, Tov_Flag, Tov_Value, Tov_Value);
template void Kanvo_Linedraw<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access, true>::DrawDot(
    Kanvo_Bitmap*, Tov_Value, Tov_Value, Tov_Value, Kanvo_Color, Tov_Flag);
