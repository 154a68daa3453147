// Gallery_Page: the two ways to look at everything at once: a page for a browser and one picture of all scenes.
#ifndef GALLERY_PAGE_H
#define GALLERY_PAGE_H

#include <string>
#include <vector>

#include "Gallery_Render.h"

namespace gallery
{

//! The names of a result's two picture files.
std::string PortableFile(const Result& result);
std::string OptimisedFile(const Result& result);

//! The text of index.html. scale: screen pixels per picture pixel, without smoothing.
std::string Page(const std::vector<Result>& results, int scale);

//! All scenes in two columns on one bitmap.
std::unique_ptr<Kanvo_BitmapARGB32> Sheet(const std::vector<Result>& results, Kanvo_Screen& screen);

}  // namespace gallery

#endif
