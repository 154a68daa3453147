// Tov_Math: 16.16 fixed point, the float helpers, and the only conversions from float to integer in the library.
// The rest of the code uses the short names at the end; which variant stands behind one is decided there.
#ifndef TOV_MATH_H
#define TOV_MATH_H

#include <cmath>

#include "Tov_RZA1H_Math.h"
#include "Tov_Types.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// ---- float to integer -----------------------------------------------------------------------------------------------
// One result everywhere: truncated towards zero, saturated, NaN gives 0. That is what ARM's VCVT does in one
// instruction; a plain C++ cast is undefined outside the range and differs between processors and compilers.

//! vFloat truncated to a signed 32-bit integer; saturates, NaN gives 0.
inline Tov_Int Tov_FltToInt(Tov_Float vFloat)
{
#if defined(__arm__) && defined(__ARM_FP)
    Tov_Float vBits;
    __asm__("vcvt.s32.f32 %0, %1" : "=t"(vBits) : "t"(vFloat));
    Tov_Int iResult;
    __builtin_memcpy(&iResult, &vBits, sizeof iResult);
    return iResult;
#elif defined(__SSE2__)
    const Tov_Int iResult = _mm_cvttss_si32(_mm_set_ss(vFloat));  // everything out of range gives INT32_MIN
    if (iResult != INT32_MIN || vFloat < 0.0F)
    {
        return iResult;
    }
    return vFloat > 0.0F ? INT32_MAX : 0;
#else
    if (vFloat >= 2147483648.0F)
    {
        return INT32_MAX;
    }
    if (vFloat < -2147483648.0F)
    {
        return INT32_MIN;
    }
    return vFloat == vFloat ? static_cast<Tov_Int>(vFloat) : 0;
#endif
}

//! vFloat truncated to an unsigned 32-bit integer; a negative value or NaN gives 0, too large a one UINT32_MAX.
inline Tov_UInt Tov_FltToUInt(Tov_Float vFloat)
{
    if (!(vFloat > 0.0F))
    {
        return 0;
    }
    if (vFloat < 2147483648.0F)
    {
        return static_cast<Tov_UInt>(Tov_FltToInt(vFloat));
    }
    return vFloat < 4294967296.0F ? static_cast<Tov_UInt>(Tov_FltToInt(vFloat - 2147483648.0F)) + 0x80000000U
                                  : UINT32_MAX;
}

//! vFloat as 16.16, truncated towards zero; saturates, NaN gives 0.
inline Tov_Fixed Tov_FltToFix(Tov_Float vFloat)
{
    return Tov_FltToInt(vFloat * 65536.0F);
}

//! floor(dValue) of a double, for set-ups that need more than 24 bits; saturates at +-2^62, NaN gives 0.
inline std::int64_t Tov_DblFloor(double dValue)
{
    constexpr double dLimit = 4611686018427387904.0;
    if (!(dValue > -dLimit && dValue < dLimit))
    {
        return dValue >= dLimit ? INT64_C(1) << 62 : dValue <= -dLimit ? -(INT64_C(1) << 62) : 0;
    }
    const auto iTruncated = static_cast<std::int64_t>(dValue);
    return static_cast<double>(iTruncated) > dValue ? iTruncated - 1 : iTruncated;
}

//! 16.16 to float. Exact up to 24 significant bits, rounded to nearest above.
inline Tov_Float Tov_FixToFlt(Tov_Fixed fxValue)
{
    return static_cast<Tov_Float>(fxValue) * (1.0F / 65536.0F);
}

//! Integer to 16.16. Wraps outside -32768 .. 32767.
inline Tov_Fixed Tov_IntToFix(Tov_Int iValue)
{
    return static_cast<Tov_Fixed>(static_cast<Tov_UInt>(iValue) << 16);
}

//! 16.16 to integer, rounded towards minus infinity: the index of the pixel that holds the position.
inline Tov_Int Tov_FixToInt(Tov_Fixed fxValue)
{
    return fxValue >> 16;
}

//! fxA + fxB and fxA - fxB of coordinates that may lie far outside: wraps.
inline Tov_Fixed Tov_FixAdd(Tov_Fixed fxA, Tov_Fixed fxB)
{
    return static_cast<Tov_Fixed>(static_cast<Tov_UInt>(fxA) + static_cast<Tov_UInt>(fxB));
}
inline Tov_Fixed Tov_FixSub(Tov_Fixed fxA, Tov_Fixed fxB)
{
    return static_cast<Tov_Fixed>(static_cast<Tov_UInt>(fxA) - static_cast<Tov_UInt>(fxB));
}

//! The product of two plain integers, or of two 8.8 values as 16.16: wraps.
inline Tov_Fixed Tov_IntMul(Tov_Int iA, Tov_Int iB)
{
    return static_cast<Tov_Fixed>(static_cast<Tov_UInt>(iA) * static_cast<Tov_UInt>(iB));
}

// ---- portable variants ----------------------------------------------------------------------------------------------

//! |fxValue|; the most negative value has no positive twin and is returned as it is.
inline Tov_Fixed Tov_FixAbs_Default(Tov_Fixed fxValue)
{
    return fxValue < 0 ? static_cast<Tov_Fixed>(0U - static_cast<Tov_UInt>(fxValue)) : fxValue;
}

inline Tov_Fixed Tov_FixMin_Default(Tov_Fixed fxA, Tov_Fixed fxB)
{
    return fxA < fxB ? fxA : fxB;
}

//! |vFloat|. Negative zero is not less than zero and stays as it is.
inline Tov_Float Tov_FltAbs_Default(Tov_Float vFloat)
{
    return vFloat >= 0.0F ? vFloat : -vFloat;
}

inline Tov_Float Tov_FltSqrt_Default(Tov_Float vFloat)
{
    return std::sqrt(vFloat);
}

//! Length of (vX, vY) in single precision; overflows to infinity from about 1.8e19 on.
inline Tov_Float Tov_FltLen2_Default(Tov_Float vX, Tov_Float vY)
{
    return Tov_FltSqrt_Default(vX * vX + vY * vY);
}

// ---- short names ----------------------------------------------------------------------------------------------------

constexpr auto Tov_FixMul  = Tov_FixMul_RZA1H;
constexpr auto Tov_FixDiv  = Tov_FixDiv_RZA1H;
constexpr auto Tov_FixAbs  = Tov_FixAbs_Default;
constexpr auto Tov_FixMin  = Tov_FixMin_Default;
constexpr auto Tov_FltAbs  = Tov_FltAbs_Default;
constexpr auto Tov_FltSqrt = Tov_FltSqrt_Default;
constexpr auto Tov_FltLen2 = Tov_FltLen2_Default;

#endif
