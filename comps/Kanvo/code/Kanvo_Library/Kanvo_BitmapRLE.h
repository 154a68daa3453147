// Kanvo_BitmapRLE: a source bitmap over a run-length-encoded image, types BM_RGB32RLE8 and BM_RGB32RLE16. Checks its data
// once (Kanvo_ImageCheck); the blits then trust it.
#ifndef KANVO_BITMAPRLE_H
#define KANVO_BITMAPRLE_H

#include "Kanvo_ImageCheck.h"
#include "Kanvo_SourceBitmap.h"

class Kanvo_BitmapRLE : public Kanvo_SourceBitmap
{
public:
    //! A stored image of uiBytes bytes; the type is that of its token unit. The caller keeps the data alive and unchanged,
    //! or has a copy made (bCopy) in memory of the screen's library object, which also mends its alignment. Data that
    //! does not pass the check leaves a bitmap of type BM_UNKNWON and size 0, which asserts the reason now and cannot be
    //! drawn; GetReport has the reason and the byte offset.
    Kanvo_BitmapRLE(Kanvo_Screen* pkScreen, const void* pvImage, std::size_t uiBytes, Tov_Bool bCopy = false);

    //! The image's header, a const Kanvo_PrecompiledImageInfo, which must not be changed; null for data that was refused.
    void* Lock() override;

    const Kanvo_ImageReport& GetReport() const { return m_kReport; }

    //! Entry of the image's palette, 0 beyond its end. The palette is read-only: setting an entry asserts.
    Tov_UInt GetPalette(Tov_UInt uiIndex) override;

    //! Colours as ARGB32 words, the encoding of the palette.
    Kanvo_Color ColorFromRGB(Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const override;
    Kanvo_Color ColorFromARGB(Tov_UByte ubA, Tov_UByte ubR, Tov_UByte ubG, Tov_UByte ubB) const override;
    Tov_Bool    ColorToRGB(Kanvo_Color cColor, Tov_UByte& ubR, Tov_UByte& ubG, Tov_UByte& ubB) const override;

    //! Whether the image says that its palette holds other than opaque colours.
    Tov_Bool HasAlpha() const override;

private:
    //! The data itself, or the copy of it; null where a copy could not be made.
    const void* Keep(const void* pvImage, std::size_t uiBytes, Tov_Bool bCopy);

    Kanvo_ImageReport m_kReport;
};

#endif
