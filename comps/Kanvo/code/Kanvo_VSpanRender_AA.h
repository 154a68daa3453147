// Kanvo_VSpanRender_AA: vertical spans with blended edges, for X-major lines. The work is that of Kanvo_SpanRender_AA.
#ifndef KANVO_VSPANRENDER_AA_H
#define KANVO_VSPANRENDER_AA_H

#include "Kanvo_SpanRender_AA.h"

template <class PixelType, class OffsetType, class Style, class Access>
class Kanvo_VSpanRender_AA : public Kanvo_SpanRender_AA<Kanvo_AxisV<Access>, Style, Access>
{
public:
    //! Whose spans between two distances it draws.
    using TwoEdges = Kanvo_VSpanRender_AA;
};

#endif
