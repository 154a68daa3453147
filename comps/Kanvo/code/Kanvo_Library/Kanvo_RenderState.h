// Kanvo_RenderState: the table of drawing settings that a screen's bitmaps consult.
#ifndef KANVO_RENDERSTATE_H
#define KANVO_RENDERSTATE_H

#include <type_traits>

#include "Kanvo_Enums.h"
#include "Tov_Types.h"

class Kanvo_RenderState;
class Kanvo_Screen;

//! Called after a slot has changed its value; kOld is the value before. Setting a slot to the value it has calls nothing.
using Kanvo_StateCallback = void (*)(Kanvo_RenderState& kState, RenderStates eSlot, Tov_MixedType kOld);

//! 34 slots, each one of the types of Tov_MixedType; a reader must ask for the type that was set, except that every
//! slot may be read as Tov_UInt. A slot number beyond the last asserts "no such render state"; setting it does nothing
//! and reading it gives 0.
//!
//! Values of a new state: COLOR1 0xFFFFFFFF, COLOR2 0xFF000000, ALPHA 255, LINEWIDTH, POINTSIZE, LINEPATTERNSCALE,
//! TEXUAXISX, TEXVAXISY, I_LINPATFACTOR and I_LINPATREFLEN 1.0, TEXTUREMODE TM_PLANE2D, TEXTUREWRAPU and
//! TEXTUREWRAPV true; everything else 0, that is false, null, 0.0, TB_NORMAL, OB_NONE.
class Kanvo_RenderState
{
public:
    explicit Kanvo_RenderState(Kanvo_Screen* pkParent);

    //! Back to the values of a new state; callbacks stay and are called for what changes.
    void Reset();

    //! A number, a colour, an enumerator or a boolean: 32 bits, whatever integer type it comes in.
    template <typename Integer, std::enable_if_t<std::is_integral_v<Integer> || std::is_enum_v<Integer>, int> = 0>
    void Set(RenderStates eSlot, Integer iValue)
    {
        SetWord(eSlot, static_cast<Tov_UInt>(iValue));
    }
    void Set(RenderStates eSlot, const Tov_Value& vValue);
    //! A texture or pattern; it is not owned and must live as long as it is set.
    void Set(RenderStates eSlot, void* pvValue);

    Tov_MixedType GetState(RenderStates eSlot) const;

    Tov_UInt  GetUInt(RenderStates eSlot) const { return GetState(eSlot).uiValue; }
    Tov_Value GetValue(RenderStates eSlot) const { return GetState(eSlot).vValue; }
    //! True where the low byte is not 0, so that a slot set to any number may be asked.
    Tov_Bool GetBool(RenderStates eSlot) const { return (GetState(eSlot).uiValue & 0xFFU) != 0; }
    void*    GetPtr(RenderStates eSlot) const { return GetState(eSlot).pvValue; }

    //! Installs the callback of one slot, null for none, and returns the one before it.
    Kanvo_StateCallback SetCallback(RenderStates eSlot, Kanvo_StateCallback pfnCallback);

    Kanvo_Screen* GetParent() const { return m_kParent; }

private:
    void SetWord(RenderStates eSlot, Tov_UInt uiValue);
    void Store(RenderStates eSlot, Tov_MixedType kValue);

    Kanvo_Screen*       m_kParent;
    Tov_MixedType       m_akState[Kanvo_RS_QUANTITY];
    Kanvo_StateCallback m_apCallback[Kanvo_RS_QUANTITY];
};

#endif
