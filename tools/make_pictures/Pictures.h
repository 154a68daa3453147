// Pictures: what there is to draw. Each function makes one file of scenes/pictures; make_pictures.cpp names the files.
#ifndef PICTURES_H
#define PICTURES_H

#include "Png_Writer.h"

namespace pictures
{

// Landscape.cpp
Png Landscape();  //!< opaque, like a photograph: a mountain lake at sunrise

// Icons.cpp
Png Icons();  //!< RGBA, 4 x 2 cells of 48 x 48: home, gear, heart, star; bell, sun, cloud, battery

// Sprites.cpp
Png Robot();    //!< RGB, on the key colour 0xFF00FF, without a single mixed pixel
Png Planet();   //!< a palette of up to 256 colours, some of them translucent
Png Moon();     //!< grey of 16 bits
Png Balloon();  //!< RGBA, interlaced

// Widgets.cpp
Png Glass();      //!< RGBA: a translucent panel
Png Gauge();      //!< RGBA: a dial without its pointer, which turns about the centre
Png DiscMask();   //!< grey: a disc in a ring
Png GlyphMask();  //!< grey: large lettering
Png FadeMask();   //!< grey: 0 to 255 from left to right, every column of one value

}  // namespace pictures

#endif
