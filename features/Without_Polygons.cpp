// Without_Polygons: the worker of polygons, textured ones too, in a library that was built without them
// (KANVO_WITH_POLYGONS).
#include "Kanvo_Polydraw.h"
#include "Trak_Assert.h"

template <class PixelType, class OffsetType, class Access>
void Kanvo_Polydraw<PixelType, OffsetType, Access>::DrawPolygon(Kanvo_Bitmap*, const void*, Tov_UInt, Tov_UInt,
                                                                Tov_Flag, Kanvo_Color)
{
    TRAK_CHECK(false, "polygons are not part of this library");
}

template void Kanvo_Polydraw<Kanvo_PixelARGB32, Kanvo_OffsetARGB32, Kanvo_PixelARGB32_Access>::DrawPolygon(
    Kanvo_Bitmap*, const void*, Tov_UInt, Tov_UInt, Tov_Flag, Kanvo_Color);
