// Kanvo_VSpanRender: vertical spans with hard edges, for X-major lines. The work is that of Kanvo_SpanRender.
#ifndef KANVO_VSPANRENDER_H
#define KANVO_VSPANRENDER_H

#include "Kanvo_SpanRender.h"

template <class PixelType, class OffsetType, class Style, class Access>
class Kanvo_VSpanRender : public Kanvo_SpanRender<Kanvo_AxisV<Access>, Style, Access>
{
public:
    //! Whose spans between two distances it draws.
    using TwoEdges = Kanvo_VSpanRender;
};

#endif
