// Kanvo_HSpanRender_AA: horizontal spans with blended edges, for Y-major lines and polygons. The work is that of Kanvo_SpanRender_AA.
#ifndef KANVO_HSPANRENDER_AA_H
#define KANVO_HSPANRENDER_AA_H

#include "Kanvo_SpanRender_AA.h"

template <class PixelType, class OffsetType, class Style, class Access>
class Kanvo_HSpanRender_AA : public Kanvo_SpanRender_AA<Kanvo_AxisH<Access>, Style, Access>
{
public:
    //! Whose spans between two distances it draws.
    using TwoEdges = Kanvo_HSpanRender_AA;
};

#endif
