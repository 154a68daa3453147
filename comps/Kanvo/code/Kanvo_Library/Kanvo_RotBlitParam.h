// Kanvo_RotBlitParam: the geometry of rotated blits: the edges of the turned rectangle and the source positions along
// them. Called by the workers of Kanvo_RotBlit, whose scan (Kanvo_RotScan) reads the edges row by row.
//
// A point (p, q) of the source rectangle, in pixels from its top-left corner, lands on
//
//     x = DstX + cos * StretchX * (p - RotPosX) - sin * StretchY * (q - RotPosY)
//     y = DstY + sin * StretchX * (p - RotPosX) + cos * StretchY * (q - RotPosY)
//
// so the rotation centre lands on the destination point whatever the angle and the stretch are, positive angles turn
// clockwise on the screen, and negative stretch mirrors. Angles are degrees; at multiples of 90 pixels map to pixels
// exactly. A pixel is drawn when its centre lies inside the turned rectangle.
#ifndef KANVO_ROTBLITPARAM_H
#define KANVO_ROTBLITPARAM_H

#include "Kanvo_Bitmap.h"
#include "Tov_Math.h"
#include "Tov_Types.h"

//! One edge of the left side. Source coordinates are those of the source bitmap: v is the column, u the row.
struct Kanvo_RotBlitEdgeLeft
{
    Tov_Int   y1;  //!< destination row at which the edge takes over
    Tov_Fixed dx;  //!< change of x per row
    Tov_Fixed sx;  //!< x on row y1
    Tov_Fixed v;   //!< source column on row y1
    Tov_Fixed u;   //!< source row on row y1
    Tov_Fixed dv;  //!< change of v per row
    Tov_Fixed du;  //!< change of u per row

    // 16 more binary places of each, so that a slanted side does not leave, row by row, what other rows start on.
    Tov_UShort usFineV  = 0;
    Tov_UShort usFineU  = 0;
    Tov_UShort usFineDV = 0;
    Tov_UShort usFineDU = 0;

    //! All values one row further down.
    void NextRow()
    {
        sx = Tov_FixAdd(sx, dx);
        Add(v, usFineV, dv, usFineDV);
        Add(u, usFineU, du, usFineDU);
    }

private:
    static void Add(Tov_Fixed& fxValue, Tov_UShort& usFine, Tov_Fixed fxStep, Tov_UShort usFineStep)
    {
        const Tov_UInt uiFine = static_cast<Tov_UInt>(usFine) + usFineStep;
        fxValue               = Tov_FixAdd(Tov_FixAdd(fxValue, fxStep), static_cast<Tov_Fixed>(uiFine >> 16));
        usFine                = static_cast<Tov_UShort>(uiFine & 0xFFFF);
    }
};

//! One edge of the right side, which carries no source coordinates.
struct Kanvo_RotBlitEdgeRight
{
    Tov_Int   y1;
    Tov_Fixed dx;
    Tov_Fixed sx;
};

class Kanvo_RotBlitParam
{
public:
    static constexpr Tov_Int MAX_EDGES = 3;

    //! Edges, sorted by row, of the source rectangle turned into pkDest and clipped to its clip rectangle; both lists begin
    //! with the same row. iEy: the row after the last; au, av: source step for one destination pixel to the right. Every
    //! sample of the scan lies inside the source rectangle, and with BLIT_BILINEAR in ulFlags its 2x2 block does. False
    //! where nothing is to be drawn: outside the clip; a size, stretch or filtered extent without pixels; numbers that
    //! are not finite or beyond a million; source coordinates beyond 32767; 16384 source pixels or more to a pixel.
    //!
    //! The clip rectangle chooses from what is drawn on the whole bitmap: a pixel is drawn with any clip rectangle that
    //! holds it or with none. It is sampled at the same position, but where the clip rectangle cuts a side off on the left:
    //! there the position may differ by up to two units of 16.16.
    static Tov_Bool RotBlitCalc(const Kanvo_Bitmap* pkDest, Tov_UInt uiWidth, Tov_UInt uiHeight, Tov_UInt uiSrcX,
                                Tov_UInt uiSrcY, Tov_Value vDstX, Tov_Value vDstY, Tov_Value vAngle, Tov_Flag ulFlags,
                                Tov_Value vStretchX, Tov_Value vStretchY, Tov_Value vRotPosX, Tov_Value vRotPosY,
                                Kanvo_RotBlitEdgeLeft* akLeft, Kanvo_RotBlitEdgeRight* akRight, Tov_Int& iEdgeCntLeft,
                                Tov_Int& iEdgeCntRight, Tov_Int& iEy, Tov_Int& au, Tov_Int& av);
};

#endif
