// Scene_Dots: what DrawDot does: radii from a third of a pixel to forty, centred anywhere between pixels, in three
// qualities.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

constexpr Kanvo_ColorARGB32 Rainbow[] = {Rose, Amber, Teal, Sky};

}  // namespace

void DotSizes(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    constexpr Tov_Value Small[] = {0.3F, 0.7F, 1.0F, 1.2F, 1.6F, 2.0F, 2.5F, 3.0F, 4.0F, 5.0F, 6.0F, 8.0F};

    Stage(target, "DrawDot: radius 0.3 to 32", "right: 4 x");
    for (Tov_Int row = 0; row < 3; ++row)
    {
        const NamedFlags& quality = Qualities[row];
        const Tov_Int     top     = 20 + row * 73;
        const auto        vTop    = static_cast<Tov_Value>(top);
        Caption(target, 4, top, quality.name, Ink);
        Tov_Value x = 10.0F;
        for (Tov_UInt index = 0; index < 12; ++index)
        {
            x += Small[index] + 3.25F;
            target.DrawDot(x, vTop + 22.0F, Small[index], Ink, quality.flags);
            x += Small[index] + 3.5F;
        }
        // rings of dots on dots, at every fraction of a pixel
        for (Tov_UInt index = 0; index < 24; ++index)
        {
            const auto step = static_cast<Tov_Value>(index);
            target.DrawDot(12.0F + step * 8.03125F, vTop + 46.0F, 2.6F, Rainbow[index % 4], quality.flags);
            target.DrawDot(12.0F + step * 8.03125F, vTop + 60.0F + step / 24.0F, 0.8F, Ink, quality.flags);
        }
        target.DrawDot(240.4F, vTop + 37.3F, 32.0F, Edge, quality.flags);
        target.DrawDot(240.4F, vTop + 37.3F, 22.5F, Teal, quality.flags);
        target.DrawDot(240.4F, vTop + 37.3F, 13.2F, Night, quality.flags);
        target.DrawDot(240.4F, vTop + 37.3F, 6.0F, Amber, quality.flags);
        Magnify(target, {215, top + 5, 29, 17}, 280, top + 2, 4);
        Outline(target, {280, top + 2, 116, 68}, Edge);
    }
}

void DotClips(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    Stage(target, "DrawDot: radius 40, cut and translucent", "below: 4 x");
    for (Tov_Int column = 0; column < 3; ++column)
    {
        const NamedFlags& quality = Qualities[column];
        const Tov_Int     left    = 4 + column * 132;
        const Box         window  = {left + 14, 42, 100, 100};
        Caption(target, left + 64, 22, quality.name, Ink, Align::Centre);
        Checkerboard(target, window, 10, 0xFF2A3644U, Panel);
        Outline(target, window, Amber);
        target.SetCliprect(static_cast<Tov_UInt>(window.x), static_cast<Tov_UInt>(window.y),
                           static_cast<Tov_UInt>(window.x) + window.width - 1,
                           static_cast<Tov_UInt>(window.y) + window.height - 1);
        // plain dots store their colour, alpha included: opaque ones there
        const Kanvo_ColorARGB32     solid     = quality.flags == 0 ? 0xFF000000U : 0U;
        constexpr Kanvo_ColorARGB32 Colours[] = {0xA0FF5C74U, 0xA0FFB224U, 0xA022C7B0U, 0xA04AA8FFU};
        for (Tov_Int corner = 0; corner < 4; ++corner)
        {
            const auto x = static_cast<Tov_Value>(window.x + (corner % 2) * 100) + 0.3F;
            const auto y = static_cast<Tov_Value>(window.y + (corner / 2) * 100) + 0.7F;
            target.DrawDot(x, y, 40.0F, Colours[corner] | solid, quality.flags);
        }
        target.DrawDot(static_cast<Tov_Value>(left) + 63.8F, 92.3F, 40.0F, 0x80F2F6FAU | solid, quality.flags);
        target.SetCliprect(0, 0, target.GetWidth() - 1, target.GetHeight() - 1);
        Magnify(target, {window.x + 72, window.y + 24, 32, 18}, left, 162, 4);
        Outline(target, {left, 162, 128, 72}, Edge);
    }
}

}  // namespace scenes
