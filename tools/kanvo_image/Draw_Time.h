// Draw_Time: how long the drawing library takes for an encoded picture on this machine.
#ifndef DRAW_TIME_H
#define DRAW_TIME_H

#include "Image_Encode.h"

namespace kanvo_image
{

//! Microseconds for drawing the whole picture once at full opacity, optimised loops allowed: the best of several
//! series. With Blit; a picture with alpha in a format that keeps it with BlitAlpha, as Blit would not blend it.
double DrawTime(const image::Encoded& encoded);

}  // namespace kanvo_image

#endif
