// Kanvo_Pattern: the colours along a line. A table of one period, and the same read backwards behind it, for lines that
// are drawn from their end.
#ifndef KANVO_PATTERN_H
#define KANVO_PATTERN_H

#include "Kanvo_RenderState.h"
#include "Tov_Types.h"

//! A pattern is used by lines with Kanvo_LF_PATTERN after Use has put it into a render state. It is not copied: keep it
//! alive as long as lines may use it, and change it between lines only.
class Kanvo_Pattern
{
public:
    static constexpr Tov_UInt COLORS = 256;  //!< entries of one period

    //! One colour of a gradient. vPosition: 0 at the start of the period, 1 at its end.
    struct Stop
    {
        Tov_Value         vPosition;
        Kanvo_ColorARGB32 clColor;
    };

    //! Transparent throughout, one pixel long.
    Kanvo_Pattern();

    //! Fills the period of vPeriod pixels with a gradient through uiCount stops, which must be in order; before the first
    //! and behind the last their colour goes on. Two stops at one place make a hard step. Alpha is mixed like the other
    //! channels. False, leaving the pattern alone, for no stops, stops out of order, or a period
    //! that is not positive or above a million pixels.
    Tov_Bool SetStops(const Stop* pkStops, Tov_UInt uiCount, Tov_Value vPeriod);

    //! Fills the period with dashes: pvLengths are the lengths in pixels of dash, gap, dash, gap ...; dashes have clDash,
    //! gaps clGap. The period is their sum; an odd count is gone through twice, so that dashes and gaps alternate. False,
    //! leaving the pattern alone, for no lengths, negative ones or a sum that is not positive.
    Tov_Bool SetDashes(const Tov_Value* pvLengths, Tov_UInt uiCount, Kanvo_ColorARGB32 clDash, Kanvo_ColorARGB32 clGap);

    //! Makes lines of this render state use the pattern, stretched by the state's LINEPATTERNSCALE. Sets LINEPATTERN,
    //! I_LINPATFACTOR (periods per pixel) and I_LINPATREFLEN (pixels of one period); the offset stays.
    void Use(Kanvo_RenderState& kState);

    //! Length of one period in pixels.
    Tov_Value GetPeriod() const { return m_vPeriod; }

    //! One period forwards, then the same backwards: 2 x COLORS colours.
    const Kanvo_Color* GetColors() const { return m_aclColors; }

private:
    void Set(Tov_UInt uiEntry, Kanvo_ColorARGB32 clColor);

    Tov_Value   m_vPeriod;
    Kanvo_Color m_aclColors[2 * COLORS];
};

#endif
