// CountingLibrary: a library object that remembers what it was asked for, and refuses memory on request.
#ifndef COUNTINGLIBRARY_H
#define COUNTINGLIBRARY_H

#include <vector>

#include "Kanvo_Object.h"

namespace support
{

class CountingLibrary : public Kanvo
{
public:
    struct Allocation
    {
        Tov_UInt  type;
        Tov_UByte bufferType;
        Tov_UInt  width;
        Tov_UInt  height;
        void*     buffer;  // what was returned
    };
    struct Return
    {
        void*     buffer;
        Tov_UByte bufferType;
    };

    void* AllocBitmapBuffer(Tov_UInt uiType, Tov_UByte ubBBT, Tov_UInt uiWidth, Tov_UInt uiHeight) override
    {
        void* const buffer = refuse ? nullptr : Kanvo::AllocBitmapBuffer(uiType, ubBBT, uiWidth, uiHeight);
        allocations.push_back({uiType, ubBBT, uiWidth, uiHeight, buffer});
        return buffer;
    }

    void FreeBitmapBuffer(void* pBuffer, Tov_UByte ubBBT) override
    {
        returns.push_back({pBuffer, ubBBT});
        Kanvo::FreeBitmapBuffer(pBuffer, ubBBT);
    }

    bool                    refuse = false;
    std::vector<Allocation> allocations;
    std::vector<Return>     returns;
};

}  // namespace support

#endif
