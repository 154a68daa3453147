// DrawCalls: the list.
#include "DrawCalls.h"

#include "Kanvo_Primitive.h"

namespace support
{

namespace
{

constexpr Tov_UInt  COLOR     = 0x80402010U;
constexpr Tov_UInt  OTHER     = 0xFF00FF00U;
constexpr Tov_UByte HALF      = 128;
const Kanvo_Coord2D CORNERS[] = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};

const Kanvo_Primitive SQUARE(PT_POLYGON, CORNERS, 4, COLOR);

}  // namespace

const std::vector<DrawCall>& DrawCalls()
{
    using Bitmap = Kanvo_Bitmap;
    static const std::vector<DrawCall> CALLS{
        {"Blit", DrawCall::WORKS, [](Bitmap& t, Bitmap& s) { t.Blit(&s, 4, 4, 0, 0, 0, 0, 0, 255, 0); }},
        {"BlitAlpha", DrawCall::PENDING, [](Bitmap& t, Bitmap& s) { t.BlitAlpha(&s, &s, 4, 4, 0, 0, 0, 0, 0, HALF); }},
        {"BlitColor", DrawCall::WORKS, [](Bitmap& t, Bitmap& s) { t.BlitColor(&s, 4, 4, 0, 0, 0, 0, COLOR, 0, 255); }},
        {"Blit2Color", DrawCall::WORKS,
         [](Bitmap& t, Bitmap& s) { t.Blit2Color(&s, 4, 4, 0, 0, 0, 0, COLOR, OTHER, 0, 255); }},
        {"StretchBlit", DrawCall::PENDING,
         [](Bitmap& t, Bitmap& s) { t.StretchBlit(&s, 4, 4, 0, 0, 3, 3, 0, 0, 0, 255, 0); }},
        {"StretchBlitAlpha", DrawCall::PENDING,
         [](Bitmap& t, Bitmap& s) { t.StretchBlitAlpha(&s, &s, 4, 4, 0, 0, 3, 3, 0, 0, 0, HALF); }},
        {"StretchBlitColor", DrawCall::PENDING,
         [](Bitmap& t, Bitmap& s) { t.StretchBlitColor(&s, 4, 4, 0, 0, 3, 3, 0, 0, COLOR, 0, 255); }},
        {"StretchBlit2Color", DrawCall::PENDING,
         [](Bitmap& t, Bitmap& s) { t.StretchBlit2Color(&s, 4, 4, 0, 0, 3, 3, 0, 0, COLOR, OTHER, 0, 255); }},
        {"RotBlit", DrawCall::PENDING,
         [](Bitmap& t, Bitmap& s) { t.RotBlit(&s, 4, 4, 0, 0, 2, 2, 30, 0, 1, 1, 2, 2, 255, 0); }},
        {"RotBlitAlpha", DrawCall::PENDING,
         [](Bitmap& t, Bitmap& s) { t.RotBlitAlpha(&s, &s, 4, 4, 0, 0, 2, 2, 30, 0, 1, 1, 2, 2, HALF); }},
        {"RotBlitColor", DrawCall::PENDING,
         [](Bitmap& t, Bitmap& s) { t.RotBlitColor(&s, 4, 4, 0, 0, 2, 2, COLOR, 30, 0, 1, 1, 2, 2, 255); }},
        {"RotBlit2Color", DrawCall::PENDING,
         [](Bitmap& t, Bitmap& s) { t.RotBlit2Color(&s, 4, 4, 0, 0, 2, 2, COLOR, OTHER, 30, 0, 1, 1, 2, 2, 255); }},
        {"DrawLine", DrawCall::PENDING,
         [](Bitmap& t, Bitmap&) {
             t.DrawLine({0, 0}, {4, 4}, COLOR, 0, 1, 1);
         }},
        {"DrawPolygon", DrawCall::WORKS, [](Bitmap& t, Bitmap&) { t.DrawPolygon(CORNERS, 4, COLOR, POLY_NONE); }},
        {"DrawPrimitive", DrawCall::WORKS, [](Bitmap& t, Bitmap&) { t.DrawPrimitive(SQUARE, 0); }},
        {"DrawPrimitive in the plane", DrawCall::WORKS,
         [](Bitmap& t, Bitmap&) { t.DrawPrimitive(SQUARE, Kanvo_Matrix2::IDENTITY, Kanvo_Vector2::ZERO, 0); }},
        {"DrawPrimitive in space", DrawCall::WORKS,
         [](Bitmap& t, Bitmap&) { t.DrawPrimitive(SQUARE, Kanvo_Matrix3::IDENTITY, Kanvo_Vector3(0, 0, 0), 0); }},
        {"DrawDot", DrawCall::PENDING, [](Bitmap& t, Bitmap&) { t.DrawDot(2, 2, 1, COLOR, 0); }},
        {"Clear", DrawCall::WORKS, [](Bitmap& t, Bitmap&) { t.Clear(COLOR); }},
        {"FillRect", DrawCall::WORKS, [](Bitmap& t, Bitmap&) { t.FillRect(4, 4, 0, 0, COLOR, 0); }},
        {"RenderPrimitivePoly", DrawCall::WORKS,
         [](Bitmap& t, Bitmap&) { t.RenderPrimitivePoly(CORNERS, 4, sizeof CORNERS[0], POLY_NONE, COLOR); }},
    };
    return CALLS;
}

}  // namespace support
