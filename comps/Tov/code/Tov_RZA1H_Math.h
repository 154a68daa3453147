// Tov_RZA1H_Math: the two fixed-point operations tuned for the RZ/A1H. Written so that a Cortex-A9 compiler makes one
// SMULL of the product and one library division of the quotient; any other compiler gives the same bits.
// Tov_Math gives them their short names.
#ifndef TOV_RZA1H_MATH_H
#define TOV_RZA1H_MATH_H

#include "Tov_Types.h"

//! The low word of a 64-bit result. Leaves the upper half to wrap, which the callers promise.
inline Tov_Fixed Tov_LowWord(std::int64_t iValue)
{
    return static_cast<Tov_Fixed>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(iValue)));
}

//! fxA * fxB: the full 64-bit product shifted right by 16. Rounds towards minus infinity; overflow wraps.
inline Tov_Fixed Tov_FixMul_RZA1H(Tov_Fixed fxA, Tov_Fixed fxB)
{
    return Tov_LowWord((static_cast<std::int64_t>(fxA) * fxB) >> 16);
}

//! fxA / fxB: 64-bit division, truncated towards zero, low word returned. fxB must not be 0.
inline Tov_Fixed Tov_FixDiv_RZA1H(Tov_Fixed fxA, Tov_Fixed fxB)
{
    return Tov_LowWord(static_cast<std::int64_t>(fxA) * 65536 / fxB);
}

#endif
