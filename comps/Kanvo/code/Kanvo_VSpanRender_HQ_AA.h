// Kanvo_VSpanRender_HQ_AA: vertical spans with filtered edges, for X-major lines. The work is that of Kanvo_SpanRender_HQ_AA.
#ifndef KANVO_VSPANRENDER_HQ_AA_H
#define KANVO_VSPANRENDER_HQ_AA_H

#include "Kanvo_SpanRender_HQ_AA.h"
#include "Kanvo_VSpanRender_AA.h"

template <class PixelType, class OffsetType, class Style, class Access>
class Kanvo_VSpanRender_HQAA : public Kanvo_SpanRender_HQAA<Kanvo_AxisV<Access>, Style, Access>
{
public:
    //! Whose spans between two distances it draws.
    using TwoEdges = Kanvo_VSpanRender_AA<PixelType, OffsetType, Style, Access>;
};

#endif
