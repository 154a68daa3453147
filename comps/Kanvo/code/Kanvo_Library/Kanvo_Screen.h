// Kanvo_Screen: what the bitmaps of one display have in common, the library object and the render state.
#ifndef KANVO_SCREEN_H
#define KANVO_SCREEN_H

#include "Kanvo_RenderState.h"

class Kanvo;

//! Must outlive the bitmaps made with it; the library object must outlive the screen.
class Kanvo_Screen
{
public:
    //! pkOwner: where bitmaps of this screen get their memory; null for a screen whose bitmaps all bring their own.
    explicit Kanvo_Screen(Kanvo* pkOwner) : m_pkOwner(pkOwner), m_kState(this) {}
    Kanvo_Screen(const Kanvo_Screen&)            = delete;
    Kanvo_Screen& operator=(const Kanvo_Screen&) = delete;

    Kanvo*                   GetOwner() const { return m_pkOwner; }
    Kanvo_RenderState&       GetRenderState() { return m_kState; }
    const Kanvo_RenderState& GetRenderState() const { return m_kState; }

private:
    Kanvo*            m_pkOwner;
    Kanvo_RenderState m_kState;
};

#endif
