// Kanvo_Primitive: the three forms of DrawPrimitive. Each is a rule that places a vertex; what is drawn with the vertices is
// the same for all, and the business of the bitmap's own operations.
#include "Kanvo_Primitive.h"

#include "Kanvo_Bitmap.h"
#include "Kanvo_PolyBuffers.h"

namespace
{

//! A vertex as it is seen, or not, because it lies behind the viewer.
struct Placed
{
    Kanvo_Vector2 kPoint;
    Tov_Bool      bSeen;
};

template <class Place>
void DrawPoints(Kanvo_Bitmap& kBitmap, const Kanvo_Primitive& kPrimitive, Tov_Flag ulFlags, Place kPlace)
{
    for (Tov_UInt uiIndex = 0; uiIndex < kPrimitive.GetCount(); ++uiIndex)
    {
        const Placed kAt = kPlace(kPrimitive.GetVertices()[uiIndex]);
        if (kAt.bSeen)
        {
            kBitmap.DrawDot(kAt.kPoint.x, kAt.kPoint.y, kPrimitive.GetSize() * 0.5F, kPrimitive.GetColor(), ulFlags);
        }
    }
}

//! uiStep: vertices from the end of one line to the end of the next.
template <class Place>
void DrawLines(Kanvo_Bitmap& kBitmap, const Kanvo_Primitive& kPrimitive, Tov_Flag ulFlags, Place kPlace,
               Tov_UInt uiStep)
{
    const Kanvo_Coord2D* const pkVertices = kPrimitive.GetVertices();
    for (Tov_UInt uiEnd = 1; uiEnd < kPrimitive.GetCount(); uiEnd += uiStep)
    {
        const Placed kFrom = kPlace(pkVertices[uiEnd - 1]);
        const Placed kTo   = kPlace(pkVertices[uiEnd]);
        if (kFrom.bSeen && kTo.bSeen)
        {
            kBitmap.DrawLine(kFrom.kPoint, kTo.kPoint, kPrimitive.GetColor(), ulFlags, kPrimitive.GetSize(),
                             kPrimitive.GetSize());
        }
        if (kPrimitive.GetCount() - uiEnd <= uiStep)
        {
            break;
        }
    }
}

template <class Place>
void DrawPolygon(Kanvo_Bitmap& kBitmap, const Kanvo_Primitive& kPrimitive, Tov_Flag ulFlags, Place kPlace)
{
    Kanvo_Coord2D* const pkPlaced = Kanvo_PolyGetVertexBuffer(kPrimitive.GetCount());
    for (Tov_UInt uiIndex = 0; pkPlaced != nullptr && uiIndex < kPrimitive.GetCount(); ++uiIndex)
    {
        const Placed kAt = kPlace(kPrimitive.GetVertices()[uiIndex]);
        if (!kAt.bSeen)
        {
            return;
        }
        pkPlaced[uiIndex] = {kAt.kPoint.x, kAt.kPoint.y};
    }
    if (pkPlaced != nullptr)
    {
        kBitmap.DrawPolygon(pkPlaced, kPrimitive.GetCount(), kPrimitive.GetColor(), ulFlags);
    }
}

template <class Place>
void Draw(Kanvo_Bitmap& kBitmap, const Kanvo_Primitive& kPrimitive, Tov_Flag ulFlags, Place kPlace)
{
    switch (kPrimitive.GetType())
    {
    case PT_POINTS: DrawPoints(kBitmap, kPrimitive, ulFlags, kPlace); break;
    case PT_LINES: DrawLines(kBitmap, kPrimitive, ulFlags, kPlace, 2); break;
    case PT_LINESTRIP: DrawLines(kBitmap, kPrimitive, ulFlags, kPlace, 1); break;
    case PT_POLYGON: DrawPolygon(kBitmap, kPrimitive, ulFlags, kPlace); break;
    }
}

}  // namespace

void Kanvo_Bitmap::DrawPrimitive(const Kanvo_Primitive& kPrimitive, Tov_Flag ulFlags)
{
    if (kPrimitive.GetType() == PT_POLYGON && (ulFlags & POLY_EXTRUDE) == 0)
    {
        // Nothing moves: no copy is needed.
        DrawPolygon(kPrimitive.GetVertices(), kPrimitive.GetCount(), kPrimitive.GetColor(), ulFlags);
        return;
    }
    Draw(*this, kPrimitive, ulFlags,
         [](const Kanvo_Coord2D& kVertex) {
             return Placed{Kanvo_Vector2(kVertex.x, kVertex.y), true};
         });
}

void Kanvo_Bitmap::DrawPrimitive(const Kanvo_Primitive& kPrimitive, const Kanvo_Matrix2& kMatrix,
                                 const Kanvo_Vector2& kTranslation, Tov_Flag ulFlags)
{
    Draw(*this, kPrimitive, ulFlags,
         [&](const Kanvo_Coord2D& kVertex)
         {
             const Kanvo_Vector2 kTurned = kMatrix * Kanvo_Vector2(kVertex.x, kVertex.y);
             return Placed{Kanvo_Vector2(kTurned.x + kTranslation.x, kTurned.y + kTranslation.y), true};
         });
}

void Kanvo_Bitmap::DrawPrimitive(const Kanvo_Primitive& kPrimitive, const Kanvo_Matrix3& kMatrix,
                                 const Kanvo_Vector3& kTranslation, Tov_Flag ulFlags)
{
    Draw(*this, kPrimitive, ulFlags,
         [&](const Kanvo_Coord2D& kVertex)
         {
             const Kanvo_Vector3 kTurned = kMatrix * Kanvo_Vector3(kVertex.x, kVertex.y, 1.0F);
             const Tov_Value     vDepth  = kTurned.z + kTranslation.z;
             return Placed{Kanvo_Vector2((kTurned.x + kTranslation.x) / vDepth, (kTurned.y + kTranslation.y) / vDepth),
                           vDepth > 0.0F};
         });
}
