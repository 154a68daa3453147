// Without_Scaling: the entries of scaled blits in a library that was built without them (KANVO_WITH_SCALING).
#include "Kanvo_BitmapARGB32.h"
#include "Trak_Assert.h"

void Kanvo_BitmapARGB32::StretchBlit(Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_Int,
                                     Tov_Int, Tov_Flag, Tov_UByte, Kanvo_Color)
{
    TRAK_CHECK(false, "scaled blits are not part of this library");
}

void Kanvo_BitmapARGB32::StretchBlitAlpha(Kanvo_Bitmap*, Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt,
                                          Tov_UInt, Tov_UInt, Tov_Int, Tov_Int, Tov_Flag, Tov_UByte)
{
    TRAK_CHECK(false, "scaled blits are not part of this library");
}

void Kanvo_BitmapARGB32::StretchBlitColor(Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt,
                                          Tov_Int, Tov_Int, Kanvo_Color, Tov_Flag, Tov_UByte)
{
    TRAK_CHECK(false, "scaled blits are not part of this library");
}

void Kanvo_BitmapARGB32::StretchBlit2Color(Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt,
                                           Tov_Int, Tov_Int, Kanvo_Color, Kanvo_Color, Tov_Flag, Tov_UByte)
{
    TRAK_CHECK(false, "scaled blits are not part of this library");
}
