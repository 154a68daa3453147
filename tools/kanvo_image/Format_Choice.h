// Format_Choice: what --format auto takes, for encode, info and report alike.
#ifndef FORMAT_CHOICE_H
#define FORMAT_CHOICE_H

#include "Image_Formats.h"

namespace kanvo_image
{

//! The lossless format with the smallest file, and why. Where the palette of an indexed picture is kept, its RLE images
//! have all of the palette's entries, also those that no pixel has.
image::Choice ChooseFormat(const image::Picture& picture, bool keepFilePalette);

}  // namespace kanvo_image

#endif
