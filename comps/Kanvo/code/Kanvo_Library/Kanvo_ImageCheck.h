// Kanvo_ImageCheck: looks at run-length-encoded images that cannot be trusted. Drawing trusts its data; whatever passes
// here draws without reading outside it. One pass, no memory of its own.
#ifndef KANVO_IMAGECHECK_H
#define KANVO_IMAGECHECK_H

#include <cstddef>

#include "Kanvo_Enums.h"
#include "Tov_Types.h"

//! What is wrong with an image, in the order in which it is looked for.
enum Kanvo_ImageFault : Tov_UByte
{
    IMAGE_GOOD = 0,
    IMAGE_TOO_SHORT,   //!< fewer bytes than a header
    IMAGE_MISALIGNED,  //!< the data does not start at a multiple of four
    IMAGE_NOT_KANVO,   //!< first identification word
    IMAGE_NOT_RLE,     //!< second identification word
    IMAGE_UNKNOWN_VERSION,
    IMAGE_WRONG_UNIT,       //!< token unit neither 8 nor 16 bits, or not that of the bitmap type asked for
    IMAGE_BAD_SIZE,         //!< width or height 0, or beyond 32767
    IMAGE_BAD_PALETTE,      //!< no entry, more than indices can name, or reaching beyond the data
    IMAGE_BAD_START,        //!< token start inside header or palette, misaligned, or beyond the data
    IMAGE_TOKEN_CUT_OFF,    //!< a token reaches beyond the data
    IMAGE_INDEX_TOO_LARGE,  //!< an index names no palette entry
    IMAGE_TOO_MANY_PIXELS,  //!< a token reaches beyond the last pixel
    IMAGE_NO_END,           //!< all pixels are there, and then no end token
    IMAGE_ENDS_EARLY,       //!< a warning: the end token comes before the last pixel, the rest stays undrawn
    IMAGE_NO_MEMORY,        //!< not the data's fault: a copy was wanted and could not be made
    IMAGE_FAULT_QUANTITY
};

//! The answer. uiOffset: the byte, from the start of the data, at which the fault was seen.
struct Kanvo_ImageReport
{
    Kanvo_ImageFault eFault;
    std::size_t      uiOffset;

    //! Whether the image can be drawn: it is good, or merely ends early.
    Tov_Bool IsUsable() const { return eFault == IMAGE_GOOD || eFault == IMAGE_ENDS_EARLY; }
};

//! Looks at a stored image of uiBytes bytes. eType: BM_RGB32RLE8 or BM_RGB32RLE16 to insist on that unit, BM_UNKNWON for
//! either. Bytes behind the end token are not looked at. Null data counts as too short.
Kanvo_ImageReport Kanvo_CheckImage(const void* pvData, std::size_t uiBytes, BitmapType eType = BM_UNKNWON);

//! One line of English for a fault.
const char* Kanvo_ImageFaultText(Kanvo_ImageFault eFault);

#endif
