// PoorBitmaps: bitmaps whose library object had no memory for their pixels.
#ifndef POORBITMAPS_H
#define POORBITMAPS_H

#include "AssertCapture.h"
#include "CountingLibrary.h"
#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapARGB32.h"
#include "Kanvo_BitmapRGB32.h"
#include "Kanvo_BitmapRGB565.h"

namespace support
{

//! One of each format, size x size. What their constructors assert is kept from the test.
class PoorBitmaps
{
    class Refusing : public CountingLibrary
    {
    public:
        Refusing() { refuse = true; }
    };

    Refusing      m_library;
    Kanvo_Screen  m_screen{&m_library};
    AssertCapture m_asserts;

public:
    explicit PoorBitmaps(Tov_UInt size, unsigned optimizedBlit = OB_NONE)
        : argb32(&m_screen, size, size),
          rgb32(&m_screen, size, size),
          rgb565(&m_screen, size, size),
          a8(&m_screen, size, size)
    {
        m_screen.GetRenderState().Set(OPTIMIZED_BLIT, optimizedBlit);
        argb32.Lock();
    }

    Kanvo_BitmapARGB32 argb32;  // locked
    Kanvo_BitmapRGB32  rgb32;
    Kanvo_BitmapRGB565 rgb565;
    Kanvo_BitmapA8     a8;
};

}  // namespace support

#endif
