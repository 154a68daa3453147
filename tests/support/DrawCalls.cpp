// DrawCalls: the list.
#include "DrawCalls.h"

#include "BlitBitmaps.h"

namespace support
{

namespace
{

constexpr Tov_UInt  COLOR     = 0x80402010U;
constexpr Tov_UInt  OTHER     = 0xFF00FF00U;
constexpr Tov_UByte HALF      = 128;
const Kanvo_Coord2D CORNERS[] = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};

Kanvo_Primitive AnyPrimitive()
{
    return {PT_POLYGON, CORNERS, 4, COLOR};
}

//! The one type of map that operations with two colours take when they scale or turn. No bitmap class has it.
class TwoColourMap : public AnySource
{
public:
    TwoColourMap() : AnySource(nullptr, BM_ALPHA5_2, 4, 4, m_bytes, 0, true) {}

private:
    std::uint8_t m_bytes[16] = {};
};

}  // namespace

const std::vector<DrawCall>& DrawCalls()
{
    using Bitmap = Kanvo_Bitmap;
    static const std::vector<DrawCall> CALLS{
        {"Blit", [](Bitmap& t, Bitmap& s) { t.Blit(&s, 4, 4, 0, 0, 0, 0, 0, 255, 0); }},
        {"BlitAlpha", [](Bitmap& t, Bitmap& s) { t.BlitAlpha(&s, &s, 4, 4, 0, 0, 0, 0, 0, HALF); }},
        {"BlitColor", [](Bitmap& t, Bitmap& s) { t.BlitColor(&s, 4, 4, 0, 0, 0, 0, COLOR, 0, 255); }},
        {"Blit2Color", [](Bitmap& t, Bitmap& s) { t.Blit2Color(&s, 4, 4, 0, 0, 0, 0, COLOR, OTHER, 0, 255); }},
        {"StretchBlit", [](Bitmap& t, Bitmap& s) { t.StretchBlit(&s, 4, 4, 0, 0, 3, 3, 0, 0, 0, 255, 0); }},
        {"StretchBlitAlpha", [](Bitmap& t, Bitmap& s) { t.StretchBlitAlpha(&s, &s, 4, 4, 0, 0, 3, 3, 0, 0, 0, HALF); }},
        {"StretchBlitColor",
         [](Bitmap& t, Bitmap& s) { t.StretchBlitColor(&s, 4, 4, 0, 0, 3, 3, 0, 0, COLOR, 0, 255); }},
        {"StretchBlit2Color",
         [](Bitmap& t, Bitmap&)
         {
             TwoColourMap m;
             t.StretchBlit2Color(&m, 4, 4, 0, 0, 3, 3, 0, 0, COLOR, OTHER, 0, 255);
         }},
        {"RotBlit", [](Bitmap& t, Bitmap& s) { t.RotBlit(&s, 4, 4, 0, 0, 2, 2, 30, 0, 1, 1, 2, 2, 255, 0); }},
        {"RotBlitAlpha",
         [](Bitmap& t, Bitmap& s) { t.RotBlitAlpha(&s, &s, 4, 4, 0, 0, 2, 2, 30, 0, 1, 1, 2, 2, HALF); }},
        {"RotBlitColor",
         [](Bitmap& t, Bitmap& s) { t.RotBlitColor(&s, 4, 4, 0, 0, 2, 2, COLOR, 30, 0, 1, 1, 2, 2, 255); }},
        {"RotBlit2Color",
         [](Bitmap& t, Bitmap&)
         {
             TwoColourMap m;
             t.RotBlit2Color(&m, 4, 4, 0, 0, 2, 2, COLOR, OTHER, 30, 0, 1, 1, 2, 2, 255);
         }},
        {"DrawLine",
         [](Bitmap& t, Bitmap&) {
             t.DrawLine({0, 0}, {4, 4}, COLOR, 0, 1, 1);
         }},
        {"DrawPolygon", [](Bitmap& t, Bitmap&) { t.DrawPolygon(CORNERS, 4, COLOR, POLY_NONE); }},
        {"DrawPrimitive", [](Bitmap& t, Bitmap&) { t.DrawPrimitive(AnyPrimitive(), 0); }},
        {"DrawPrimitive in the plane",
         [](Bitmap& t, Bitmap&) { t.DrawPrimitive(AnyPrimitive(), Kanvo_Matrix2::IDENTITY, Kanvo_Vector2::ZERO, 0); }},
        {"DrawPrimitive in space", [](Bitmap& t, Bitmap&)
         { t.DrawPrimitive(AnyPrimitive(), Kanvo_Matrix3::IDENTITY, Kanvo_Vector3(0, 0, 0), 0); }},
        {"DrawDot", [](Bitmap& t, Bitmap&) { t.DrawDot(2, 2, 1, COLOR, 0); }},
        {"Clear", [](Bitmap& t, Bitmap&) { t.Clear(COLOR); }},
        {"FillRect", [](Bitmap& t, Bitmap&) { t.FillRect(4, 4, 0, 0, COLOR, 0); }},
        {"RenderPrimitivePoly",
         [](Bitmap& t, Bitmap&) { t.RenderPrimitivePoly(CORNERS, 4, sizeof CORNERS[0], POLY_NONE, COLOR); }},
    };
    return CALLS;
}

}  // namespace support
