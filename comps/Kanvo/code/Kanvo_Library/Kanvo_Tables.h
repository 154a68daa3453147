// Kanvo_Tables: byte tables of the line and dot code. Made by tools/make_tables.py, which also checks that the numbers
// here are its own.
#ifndef KANVO_TABLES_H
#define KANVO_TABLES_H

#include "Tov_Types.h"

//! Alpha of a one-pixel-wide line at i / 32 pixels from its centre: the box-filtered line convolved with a Gauss of sigma
//! 1/2, scaled so that the four taps [f + 32], [f], [32 - f], [64 - f] of every phase f in 0 .. 31 sum to 255 or 256.
extern const Tov_UByte g_Kanvo_ubFilter[65];

//! Alpha for a coverage in small anti-aliased dots: 255 (i / 255)^(1 / 1.4), the exponent that balances the loss of light
//! of a dot spread over four pixels between white on black and black on white.
extern const Tov_UByte g_Kanvo_ubGammaRamp[256];

#endif
