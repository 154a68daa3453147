// Image_CSource: C text that carries an encoded image into a program: an array aligned to four bytes, and a header with
// its declaration and sizes. Compiles as C99 and as C++11 without a warning and contains nothing that differs from run
// to run.
#ifndef IMAGE_CSOURCE_H
#define IMAGE_CSOURCE_H

#include <string>
#include <string_view>

#include "Image_Encode.h"

namespace image
{

//! A name for the array made from any text, such as a file name without its ending: "image_" and the text with
//! everything but ASCII letters and digits turned into single underscores; "image" when nothing remains. The prefix
//! keeps clear of keywords and of names such as log or index that C libraries define.
std::string CNameFor(std::string_view text);

//! Whether a name can be used as it is: an ASCII identifier that neither C nor C++ reserves.
bool IsCName(std::string_view name);

//! The header: guard, NAME_WIDTH, NAME_HEIGHT, NAME_PITCH (raw formats), NAME_SIZE (bytes), NAME_TYPE (the library's
//! bitmap type), and the declaration with C linkage. NAME is the name in upper case.
//! name must satisfy IsCName.
std::string CHeader(const Encoded& encoded, std::string_view name);

//! The source: `const unsigned char name[]`. It includes "<name>.h" when withHeader, else it stands alone.
std::string CSource(const Encoded& encoded, std::string_view name, bool withHeader);

}  // namespace image

#endif
