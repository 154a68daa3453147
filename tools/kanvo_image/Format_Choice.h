// Format_Choice: what --format auto takes, for encode, info and report alike.
#ifndef FORMAT_CHOICE_H
#define FORMAT_CHOICE_H

#include "Image_Formats.h"

namespace kanvo_image
{

//! What becomes of the palette of an indexed picture.
enum class FilePalette
{
    Drop,   //!< RLE images get a palette of the colours that pixels have
    Keep,   //!< RLE images get the file's palette with all its entries
    Insist  //!< the same, and formats without a palette are out of the question
};

//! The lossless format with the smallest file, and why.
image::Choice ChooseFormat(const image::Picture& picture, FilePalette filePalette);

}  // namespace kanvo_image

#endif
