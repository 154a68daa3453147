// Without_RLE: the workers of run-length-encoded images in a library that was built without them (KANVO_WITH_RLE).
#include "Kanvo_RLECompressedBlits.h"
#include "Trak_Assert.h"

namespace
{

void Refuse()
{
    TRAK_CHECK(false, "run-length-encoded images are not part of this library");
}

}  // namespace

void Kanvo_RLECompressedBlits::Blit_ARGB32RLE8(Kanvo_Bitmap*, Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt,
                                               Tov_Int, Tov_Int, Tov_UByte)
{
    Refuse();
}

void Kanvo_RLECompressedBlits::Blit_ARGB32RLE16(Kanvo_Bitmap*, Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt,
                                                Tov_Int, Tov_Int, Tov_UByte)
{
    Refuse();
}

void Kanvo_RLECompressedBlits::BlitAlpha_ARGB32RLE8(Kanvo_Bitmap*, Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt,
                                                    Tov_UInt, Tov_Int, Tov_Int, Tov_UByte)
{
    Refuse();
}

void Kanvo_RLECompressedBlits::BlitAlpha_ARGB32RLE16(Kanvo_Bitmap*, Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt,
                                                     Tov_UInt, Tov_Int, Tov_Int, Tov_UByte)
{
    Refuse();
}

void Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE8(Kanvo_Bitmap*, Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt,
                                                  Tov_Int, Tov_Int, Tov_UByte, Tov_UShort, Tov_UShort)
{
    Refuse();
}

void Kanvo_RLECompressedBlits::BlitMag_ARGB32RLE16(Kanvo_Bitmap*, Kanvo_Bitmap*, Tov_UInt, Tov_UInt, Tov_UInt, Tov_UInt,
                                                   Tov_Int, Tov_Int, Tov_UByte, Tov_UShort, Tov_UShort)
{
    Refuse();
}
