// Tov_Types: the scalar types every other file computes in, and the union that a render-state slot holds.
// Widths are fixed and relied upon by the pixel arithmetic. Includes nothing of ours; everybody includes this.
#ifndef TOV_TYPES_H
#define TOV_TYPES_H

#include <cstddef>
#include <cstdint>

using Tov_Int    = std::int32_t;   //!< coordinates, counts, signed deltas
using Tov_UInt   = std::uint32_t;  //!< sizes, pitches, colours
using Tov_Short  = std::int16_t;   //!< intermediate colour channels
using Tov_UShort = std::uint16_t;  //!< RGB565 pixels, RLE units
using Tov_UByte  = std::uint8_t;   //!< colour channels, alpha, small enumerations
using Tov_Bool   = bool;           //!< one byte
using Tov_Flag   = std::uint32_t;  //!< flag words of lines, blits and polygons
using Tov_Float  = float;          //!< IEEE single precision
using Tov_Value  = Tov_Float;      //!< the library's real number: geometry, angles, widths
using Tov_Fixed  = std::int32_t;   //!< 16.16 fixed point; one pixel is 65536

using Kanvo_Color = Tov_UInt;  //!< a colour in the encoding of the bitmap it is given to
using Kanvo_ColorARGB32 =
    Tov_UInt;  //!< a colour as alpha, red, green, blue from the top byte down: the exchange format

//! One render-state slot. Four bytes on the 32-bit target; as wide as a pointer elsewhere.
union Tov_MixedType
{
    Tov_UInt  uiValue;
    Tov_Int   iValue;
    Tov_Value vValue;
    Tov_Fixed fxValue;
    Tov_UInt  kValue;  //!< a colour
    Tov_Bool  bValue;
    void*     pvValue;
};

static_assert(sizeof(Tov_Float) == 4 && sizeof(Tov_Bool) == 1 && sizeof(Tov_Int) == 4);
static_assert(sizeof(Tov_MixedType) == sizeof(void*) || sizeof(void*) < 4);

#endif
