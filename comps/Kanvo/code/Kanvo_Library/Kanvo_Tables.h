// Kanvo_Tables: tables of the line, dot and polygon code. Made by tools/make_tables.py, which also checks that the numbers
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

//! Directions of a polygon side, spread over 180 degrees, and steps of distance per direction. Direction k has the normal
//! n.y = -1 + 2 k / 64, n.x = 1 - |n.y|, which points right. Index i of a direction is the signed distance of a pixel's
//! centre from the side, in 1/24 of a pixel measured along that normal: 0 .. 15 for 0 .. 15, right of the side, and
//! 16 .. 31 for -16 .. -1. In this measure a side touches a pixel up to distance 1/2, whatever its direction.
constexpr Tov_UInt KANVO_EDGE_DIRECTIONS = 65;
constexpr Tov_UInt KANVO_EDGE_STEPS      = 32;

//! Sub-samples of a pixel to the right of the side. Thirty of them, bit j lies at row (j + 1/2) / 30 of the pixel; bits 30
//! and 31 are 0. Their number is that of the area, rounded.
extern const Tov_UInt g_auiEdgemasks[KANVO_EDGE_DIRECTIONS * KANVO_EDGE_STEPS];

//! Area of a pixel to the right of the side, 0 to 255; that of index -i is 255 less that of i.
extern const Tov_UByte g_aucEdgeArea[KANVO_EDGE_DIRECTIONS * KANVO_EDGE_STEPS];

//! Coverage for so many sub-samples; 255 from 30 on.
extern const Tov_UByte g_aucPoplookup[33];

#endif
