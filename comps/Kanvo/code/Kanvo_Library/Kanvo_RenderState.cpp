// Kanvo_RenderState: slots, defaults and change callbacks.
#include "Kanvo_RenderState.h"

#include "Trak_Assert.h"

namespace
{

// A slot is set as a whole, the bytes beyond its own type zero: equal values are equal bytes.
Tov_MixedType EmptySlot()
{
    Tov_MixedType kSlot;
    kSlot.pvValue = nullptr;  // the widest member
    return kSlot;
}

Tov_Bool IsSlot(RenderStates eSlot)
{
    const Tov_Bool bExists = eSlot < Kanvo_RS_QUANTITY;
    TRAK_CHECK(bExists, "no such render state");
    return bExists;
}

}  // namespace

Kanvo_RenderState::Kanvo_RenderState(Kanvo_Screen* pkParent) : m_kParent(pkParent), m_akState(), m_apCallback()
{
    for (Tov_MixedType& kSlot : m_akState)
    {
        kSlot = EmptySlot();
    }
    Reset();
}

void Kanvo_RenderState::Reset()
{
    for (Tov_UByte ubSlot = 0; ubSlot < Kanvo_RS_QUANTITY; ++ubSlot)
    {
        const auto eSlot = static_cast<RenderStates>(ubSlot);
        switch (eSlot)
        {
        case COLOR1: Set(eSlot, 0xFFFFFFFFU); break;
        case COLOR2: Set(eSlot, 0xFF000000U); break;
        case ALPHA: Set(eSlot, 255U); break;
        case LINEWIDTH:
        case POINTSIZE:
        case LINEPATTERNSCALE:
        case TEXUAXISX:
        case TEXVAXISY:
        case I_LINPATFACTOR:
        case I_LINPATREFLEN: Set(eSlot, 1.0F); break;
        case TEXTUREMODE: Set(eSlot, TM_PLANE2D); break;
        case TEXTUREWRAPU:
        case TEXTUREWRAPV: Set(eSlot, true); break;
        default: Store(eSlot, EmptySlot()); break;
        }
    }
}

void Kanvo_RenderState::SetWord(RenderStates eSlot, Tov_UInt uiValue)
{
    Tov_MixedType kValue = EmptySlot();
    kValue.uiValue       = uiValue;
    Store(eSlot, kValue);
}

void Kanvo_RenderState::Set(RenderStates eSlot, const Tov_Value& vValue)
{
    Tov_MixedType kValue = EmptySlot();
    kValue.vValue        = vValue;
    Store(eSlot, kValue);
}

void Kanvo_RenderState::Set(RenderStates eSlot, void* pvValue)
{
    Tov_MixedType kValue = EmptySlot();
    kValue.pvValue       = pvValue;
    Store(eSlot, kValue);
}

Tov_MixedType Kanvo_RenderState::GetState(RenderStates eSlot) const
{
    return IsSlot(eSlot) ? m_akState[eSlot] : EmptySlot();
}

Kanvo_StateCallback Kanvo_RenderState::SetCallback(RenderStates eSlot, Kanvo_StateCallback pfnCallback)
{
    if (!IsSlot(eSlot))
    {
        return nullptr;
    }
    const Kanvo_StateCallback pfnBefore = m_apCallback[eSlot];
    m_apCallback[eSlot]                 = pfnCallback;
    return pfnBefore;
}

void Kanvo_RenderState::Store(RenderStates eSlot, Tov_MixedType kValue)
{
    if (!IsSlot(eSlot))
    {
        return;
    }
    const Tov_MixedType kOld = m_akState[eSlot];
    m_akState[eSlot]         = kValue;
    if (m_apCallback[eSlot] != nullptr && kOld.pvValue != kValue.pvValue)  // the widest member: all bytes
    {
        m_apCallback[eSlot](*this, eSlot, kOld);
    }
}
