// Kanvo_Object: the library object. Hands out the memory behind bitmaps and polygons; everything else hangs off a
// Kanvo_Screen.
#ifndef KANVO_OBJECT_H
#define KANVO_OBJECT_H

#include <cstddef>

#include "Kanvo_Level.h"
#include "Tov_Types.h"

//! Owner of all bitmap buffers; the first one also selects the instruction set to draw with (Kanvo_Level.h). Derive from
//! it to place buffers in memory of your own: override the two virtual operations together. It must outlive every screen
//! and bitmap made with it.
class Kanvo
{
public:
    //! Every allocated buffer starts at a multiple of this, a cache line of the larger hosts.
    static constexpr std::size_t BUFFER_ALIGNMENT = 64;
    //! No buffer is larger than this, so that every byte offset inside a bitmap fits a Tov_Int.
    static constexpr std::size_t MAX_BUFFER_BYTES = 0x7FFFFFFF;

    Kanvo() { Kanvo_SelectRowsOnce(); }
    virtual ~Kanvo()
    {
        Kanvo::ReleasePolygons();
        CheckReturned();
    }
    Kanvo(const Kanvo&)            = delete;
    Kanvo& operator=(const Kanvo&) = delete;

    //! Memory for uiHeight rows of uiWidth pixels without padding, not cleared. uiType: BitmapType of a format with
    //! whole bytes per pixel. ubBBT: BBT_KANVO or BBT_RAM; for BBT_ROM there is nothing to allocate. Returns null where
    //! the size is zero or above MAX_BUFFER_BYTES, the type has no pixels to store, or memory is exhausted.
    virtual void* AllocBitmapBuffer(Tov_UInt uiType, Tov_UByte ubBBT, Tov_UInt uiWidth, Tov_UInt uiHeight)
    {
        return Allocate(uiType, ubBBT, uiWidth, uiHeight);
    }

    //! Takes back a bitmap's buffer. Frees what AllocBitmapBuffer of this object returned; a BBT_ROM buffer, a buffer
    //! the caller brought along, and null are left alone.
    virtual void FreeBitmapBuffer(void* pBuffer, Tov_UByte ubBBT) { Free(pBuffer, ubBBT); }

    //! Makes room for polygons of up to uiCorners corners, counted after clipping, and for anti-aliased ones in bitmaps
    //! of up to uiRows rows. What is built in serves 512 corners and 2048 rows; larger polygons assert "polygon too large"
    //! and are not drawn. Call it before drawing: no drawing operation allocates. The memory comes from AllocBitmapBuffer,
    //! 88 bytes per corner on a 32-bit processor, and is one area for all polygons on all screens: a second call replaces it, also one of
    //! another library object, unless what is there is large enough. False where there is not enough memory; what was
    //! there before stays.
    Tov_Bool ReservePolygons(Tov_UInt uiCorners, Tov_UInt uiRows);

    //! Gives the memory of ReservePolygons back, and goes back to what is built in. The destructor does this, but no longer
    //! reaches a FreeBitmapBuffer of a derived class: that class calls it in its own destructor.
    void ReleasePolygons();

    //! Bytes of one pixel of a BitmapType; 0 for types whose pixels are not whole bytes or not stored one by one.
    static Tov_UInt BytesPerPixel(Tov_UInt uiType);

private:
    // The virtual operations are inline, so that code compiled with type information can derive from a library without.
    void* Allocate(Tov_UInt uiType, Tov_UByte ubBBT, Tov_UInt uiWidth, Tov_UInt uiHeight);
    void  Free(void* pBuffer, Tov_UByte ubBBT);
    void  CheckReturned() const;

    struct Block;
    Block* m_pkBlocks  = nullptr;  //!< every live allocation, newest first
    void*  m_pPolygons = nullptr;  //!< memory of ReservePolygons
};

#endif
