// Without_Rotation: the entries of rotated blits in a library that was built without them (KANVO_WITH_ROTATION).
#include "Kanvo_BitmapARGB32.h"
#include "Trak_Assert.h"

void Kanvo_BitmapARGB32::RotBlit(Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_Value, Tov_Value, Tov_Value,
                                 Tov_Flag, Tov_Value, Tov_Value, Tov_Value, Tov_Value, Tov_UByte, Kanvo_Color)
{
    TRAK_CHECK(false, "rotated blits are not part of this library");
}

void Kanvo_BitmapARGB32::RotBlitAlpha(Kanvo_Bitmap*, Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_Value,
                                      Tov_Value, Tov_Value, Tov_Flag, Tov_Value, Tov_Value, Tov_Value, Tov_Value,
                                      Tov_UByte)
{
    TRAK_CHECK(false, "rotated blits are not part of this library");
}

void Kanvo_BitmapARGB32::RotBlitColor(Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_Value, Tov_Value,
                                      Kanvo_ColorARGB32, Tov_Value, Tov_Flag, Tov_Value, Tov_Value, Tov_Value,
                                      Tov_Value, Tov_UByte)
{
    TRAK_CHECK(false, "rotated blits are not part of this library");
}

void Kanvo_BitmapARGB32::RotBlit2Color(Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt, Tov_Value, Tov_Value,
                                       Kanvo_ColorARGB32, Kanvo_ColorARGB32, Tov_Value, Tov_Flag, Tov_Value, Tov_Value,
                                       Tov_Value, Tov_Value, Tov_UByte)
{
    TRAK_CHECK(false, "rotated blits are not part of this library");
}
