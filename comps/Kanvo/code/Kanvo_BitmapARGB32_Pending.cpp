// Kanvo_BitmapARGB32_Pending: the operations that have a slot but no worker yet. Each asserts "not implemented yet" and
// draws nothing.
#include "Kanvo_BitmapARGB32.h"
#include "Trak_Assert.h"

namespace
{

void NotImplementedYet()
{
    TRAK_CHECK(false, "not implemented yet");
}

}  // namespace

void Kanvo_BitmapARGB32::RenderPrimitivePoly(const void* /*pvValues*/, Tov_UInt /*uiCount*/, Tov_UInt /*uiPitch*/,
                                             Tov_Flag /*ulFlags*/, Kanvo_Color /*kColor*/)
{
    NotImplementedYet();
}
