// Scene_OwnPicture: a picture of any size, whatever it shows, in every format and through every kind of blit.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

//! The middle of the picture where it is larger than the frame, all of it where it is smaller.
Box MiddleOf(const Kanvo_Bitmap& picture, const Box& frame)
{
    const auto crop = [](Tov_UInt size, Tov_UInt room) { return size < room ? size : room; };
    const auto from = [](Tov_UInt size, Tov_UInt room)
    { return size < room ? 0 : static_cast<Tov_Int>((size - room) / 2); };
    return {from(picture.GetWidth(), frame.width), from(picture.GetHeight(), frame.height),
            crop(picture.GetWidth(), frame.width), crop(picture.GetHeight(), frame.height)};
}

//! Where a part of that size begins to be in the middle of the frame.
Tov_Int CentredX(const Box& part, const Box& frame)
{
    return frame.x + static_cast<Tov_Int>((frame.width - part.width) / 2);
}

Tov_Int CentredY(const Box& part, const Box& frame)
{
    return frame.y + static_cast<Tov_Int>((frame.height - part.height) / 2);
}

void Frame(Kanvo_BitmapARGB32& target, const Box& frame, const char* name)
{
    Checkerboard(target, frame);
    Outline(target, frame, Edge);
    Caption(target, frame.x, frame.y - 12, name, Quiet);
}

void PutMiddle(Kanvo_BitmapARGB32& target, Kanvo_Bitmap* picture, const Box& frame, Tov_UByte alpha)
{
    const Box part = MiddleOf(*picture, frame);
    Put(target, picture, part, CentredX(part, frame), CentredY(part, frame), alpha);
}

}  // namespace

void OwnPicture(Kanvo_BitmapARGB32& target, const Input& input)
{
    constexpr Tov_UInt Width  = 94;
    constexpr Tov_UInt Height = 53;

    const auto cell = [](int column, int row) -> Box { return {6 + 98 * column, 37 + 68 * row, Width, Height}; };

    Stage(target, "Your own picture",
          Words().Number(input.own.argb32->GetWidth()).Add(" x ").Number(input.own.argb32->GetHeight()).Text());

    const Box large = {6, 37, 2 * Width + 4, 2 * Height + 15};
    Frame(target, large, "ARGB32 at 254: the middle");
    PutMiddle(target, input.own.argb32, large, Blended);

    struct Small
    {
        const char*   name;
        Kanvo_Bitmap* picture;
        Tov_UByte     alpha;
    };
    const Small smalls[] = {{"RGB32", input.own.rgb32, 255},        {"RGB565", input.own.rgb565, 255},
                            {"A8 as grey", input.own.a8, 255},      {"ARGB32 at 64", input.own.argb32, 64},
                            {"RGB32 at 128", input.own.rgb32, 128}, {"RGB565 at 192", input.own.rgb565, 192}};
    const Box   places[] = {cell(2, 0), cell(3, 0), cell(2, 1), cell(3, 1), cell(0, 2), cell(1, 2)};
    for (int index = 0; index < 6; ++index)
    {
        Frame(target, places[index], smalls[index].name);
        PutMiddle(target, smalls[index].picture, places[index], smalls[index].alpha);
    }

    const Box tinted = cell(2, 2);
    Frame(target, tinted, "A8 in teal");
    const Box part = MiddleOf(*input.own.a8, tinted);
    Paint(target, input.own.a8, part, CentredX(part, tinted), CentredY(part, tinted), Teal);

    const Box inverse = cell(3, 2);
    Frame(target, inverse, "in ink, on night");
    Fill(target, inverse, Night);
    Paint(target, input.own.a8, part, CentredX(part, inverse), CentredY(part, inverse), Ink);
}

}  // namespace scenes
