// Kanvo_HSpanRender_HQ_AA: horizontal spans with filtered edges, for Y-major lines and polygons. The work is that of Kanvo_SpanRender_HQ_AA.
#ifndef KANVO_HSPANRENDER_HQ_AA_H
#define KANVO_HSPANRENDER_HQ_AA_H

#include "Kanvo_HSpanRender_AA.h"
#include "Kanvo_SpanRender_HQ_AA.h"

template <class PixelType, class OffsetType, class Style, class Access>
class Kanvo_HSpanRender_HQAA : public Kanvo_SpanRender_HQAA<Kanvo_AxisH<Access>, Style, Access>
{
public:
    //! Whose spans between two distances it draws.
    using TwoEdges = Kanvo_HSpanRender_AA<PixelType, OffsetType, Style, Access>;
};

#endif
