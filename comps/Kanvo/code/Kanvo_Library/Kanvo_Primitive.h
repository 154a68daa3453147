// Kanvo_Primitive: a list of vertices and what to draw with them, for Kanvo_Bitmap::DrawPrimitive.
#ifndef KANVO_PRIMITIVE_H
#define KANVO_PRIMITIVE_H

#include "Kanvo_Geometry.h"
#include "Tov_Types.h"

//! How the vertices of a primitive belong together.
enum Kanvo_PrimitiveType : Tov_UByte
{
    PT_POINTS = 0,  //!< a dot on each
    PT_LINES =
        1,  //!< a line from the first to the second, from the third to the fourth ...; an odd last one is left out
    PT_LINESTRIP = 2,  //!< a line from each to the next
    PT_POLYGON   = 3   //!< a filled outline, closed
};

//! The vertices are not owned and not copied: they must live as long as the primitive is drawn, and are never written to.
class Kanvo_Primitive
{
public:
    //! vSize: diameter of the points, or width of the lines, in pixels; a transform does not change it. Polygons do not
    //! read it. Null vertices are none.
    Kanvo_Primitive(Kanvo_PrimitiveType eType, const Kanvo_Coord2D* pkVertices, Tov_UInt uiCount, Kanvo_Color kColor,
                    Tov_Value vSize = 1.0F)
        : m_pkVertices(pkVertices),
          m_uiCount(pkVertices != nullptr ? uiCount : 0),
          m_kColor(kColor),
          m_vSize(vSize),
          m_eType(eType)
    {
    }

    Kanvo_PrimitiveType  GetType() const { return m_eType; }
    const Kanvo_Coord2D* GetVertices() const { return m_pkVertices; }
    Tov_UInt             GetCount() const { return m_uiCount; }
    Kanvo_Color          GetColor() const { return m_kColor; }
    Tov_Value            GetSize() const { return m_vSize; }

private:
    const Kanvo_Coord2D* m_pkVertices;
    Tov_UInt             m_uiCount;
    Kanvo_Color          m_kColor;
    Tov_Value            m_vSize;
    Kanvo_PrimitiveType  m_eType;
};

#endif
