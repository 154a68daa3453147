// Tov_Memory: block copy and fill under the platform layer's names, so that a target can redirect them in one place.
#ifndef TOV_MEMORY_H
#define TOV_MEMORY_H

#include <cstring>

//! Copies uiBytes bytes; the blocks must not overlap. Returns pDst.
inline void* Tov_Memcpy(void* pDst, const void* pSrc, unsigned int uiBytes)
{
    return std::memcpy(pDst, pSrc, uiBytes);
}

//! Fills uiBytes bytes with the low byte of iValue. Returns pDst.
inline void* Tov_Memset(void* pDst, int iValue, unsigned int uiBytes)
{
    return std::memset(pDst, iValue, uiBytes);
}

#endif
