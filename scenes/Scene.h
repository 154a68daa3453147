// Scene: what a program needs that shows or checks the scenes, on a desktop, a board or in a browser. The scenes lean on
// the library alone: the caller brings the pictures as bitmaps and the target.
//
//   scenes::Input input = ...;                       // every bitmap of every picture, see Pictures
//   for (const scenes::Scene& scene : scenes::All())
//   {
//       Kanvo_BitmapARGB32 target(&screen, scene.width, scene.height);
//       scenes::Draw(scene, target, input);
//   }
#ifndef SCENE_H
#define SCENE_H

#include <cstddef>

#include "Kanvo.h"

namespace scenes
{

//! One picture, in every format a blit can read.
struct Picture
{
    Kanvo_Bitmap* argb32;
    Kanvo_Bitmap* rgb32;
    Kanvo_Bitmap* rgb565;
    Kanvo_Bitmap* a8;
};

//! The pictures the scenes draw. Every pointer must be set, every size but that of own as in PictureFiles.
struct Input
{
    Picture landscape;  //!< opaque, like a photograph
    Picture icons;      //!< 4 x 2 icons of 48 x 48 with soft edges
    Picture spriteKey;  //!< a figure on magenta
    Picture glass;      //!< a translucent panel
    Picture gauge;      //!< a dial, transparent around it
    Picture maskDisc;   //!< grey: coverage
    Picture maskGlyph;  //!< grey: coverage
    Picture maskFade;   //!< grey: coverage
    Picture planet;     //!< transparent around it
    Picture moon;       //!< grey, on black
    Picture balloon;    //!< transparent around it
    Picture own;        //!< the viewer's own
};

//! Where a picture is kept, below the folder of pictures, where it goes, and its size.
struct PictureFile
{
    const char* file;
    Picture Input::*slot;
    Tov_UInt        width;
    Tov_UInt        height;
};

struct Scene
{
    const char* name;   //!< also the name of files
    const char* about;  //!< one sentence for the page
    Tov_UInt    width;
    Tov_UInt    height;
    void (*draw)(Kanvo_BitmapARGB32& target, const Input& input);
    bool pathsDiffer;  //!< the portable and the optimised path are meant to draw different pixels here
};

//! A part of a table, to walk over.
template <class Entry>
struct Table
{
    const Entry* first;
    std::size_t  count;

    const Entry* begin() const { return first; }
    const Entry* end() const { return first + count; }
    std::size_t  size() const { return count; }
};

//! All scenes, in the order in which a visitor should see them.
Table<Scene> All();

//! The scene that draws Input::own.
const Scene& Own();

//! The files of all pictures but Input::own, for which the first is a good stand-in.
Table<PictureFile> PictureFiles();

//! Locks the target, draws a scene on black and unlocks. What the target held before leaves no trace.
void Draw(const Scene& scene, Kanvo_BitmapARGB32& target, const Input& input);

//! CRC-32 (as in PNG and zip) of the pixels as little-endian ARGB words, row by row without padding.
Tov_UInt Checksum(const Kanvo_BitmapARGB32& target);

}  // namespace scenes

#endif
