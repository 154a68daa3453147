// Kanvo_PolyExtrude: makes an outline half a pixel larger on every side, so that shapes which share a side overlap instead
// of leaving a seam. Used by Kanvo_Polydraw for POLY_EXTRUDE.
#ifndef KANVO_POLYEXTRUDE_H
#define KANVO_POLYEXTRUDE_H

#include "Tov_Types.h"

//! Moves every side outwards by half a pixel along its normal and every vertex to where its two sides meet then, in place.
//! Of a vertex only x and y, the first two Tov_Value at each uiPitch bytes, are rewritten. A sharp corner moves by at most
//! 2 pixels. Vertices that coincide move alike; a side without length has no normal, and that of its neighbours counts.
//!
//! ulHints: POLY_HINT_CW if the outline runs clockwise on the screen, POLY_HINT_CCW if it runs the other way; with neither
//! or both its signed area decides, and an outline without area counts as clockwise. A wrong hint makes the outline
//! smaller. Fewer than 3 vertices, null, and coordinates that are not finite or beyond a thousand million change nothing.
void Kanvo_Extrude_Polygon(void* pvValues, Tov_UInt uiPitch, Tov_UInt uiCount, Tov_Flag ulHints);

#endif
