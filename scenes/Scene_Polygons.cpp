// Scene_Polygons: what DrawPolygon does: outlines of every kind in three renderers, shapes that share sides, textures in
// five write-backs, and a gauge made of nothing but polygons.
#include "Scene_Kit.h"
#include "Scene_List.h"

namespace scenes
{
namespace
{

constexpr Tov_UInt MaxCorners = 256;

//! An outline, put together corner by corner.
class Outlined
{
public:
    Outlined& Add(Tov_Value x, Tov_Value y)
    {
        m_corners[m_count++] = {x, y};
        return *this;
    }
    //! At an angle and a distance from a centre. 0 degrees is to the right, and they go round clockwise.
    Outlined& AddAround(Tov_Value x, Tov_Value y, Tov_Value degrees, Tov_Value distance)
    {
        double sine   = 0.0;
        double cosine = 0.0;
        Kanvo_SinCosDegrees(degrees, sine, cosine);
        return Add(x + distance * static_cast<Tov_Value>(cosine), y + distance * static_cast<Tov_Value>(sine));
    }
    void Draw(Kanvo_BitmapARGB32& target, Kanvo_ColorARGB32 colour, Tov_Flag flags)
    {
        target.DrawPolygon(m_corners, m_count, colour, flags);
    }
    const Kanvo_Coord2D* Corners() const { return m_corners; }
    Tov_UInt             Count() const { return m_count; }

private:
    Kanvo_Coord2D m_corners[MaxCorners] = {};
    Tov_UInt      m_count               = 0;
};

//! Render states as they were, restored at the closing brace.
class StateScope
{
public:
    explicit StateScope(Kanvo_RenderState& state) : m_state(state)
    {
        for (Tov_UByte slot = 0; slot < Kanvo_RS_QUANTITY; ++slot)
        {
            m_before[slot] = state.GetState(static_cast<RenderStates>(slot));
        }
    }
    ~StateScope()
    {
        for (Tov_UByte slot = 0; slot < Kanvo_RS_QUANTITY; ++slot)
        {
            m_state.Set(static_cast<RenderStates>(slot), m_before[slot].pvValue);
        }
    }
    StateScope(const StateScope&)            = delete;
    StateScope& operator=(const StateScope&) = delete;

private:
    Kanvo_RenderState& m_state;
    Tov_MixedType      m_before[Kanvo_RS_QUANTITY];
};

//! A tile of 32 x 32 texels that shows where its top is, and the texture over it.
class Tile
{
public:
    explicit Tile(Kanvo_Screen* screen) : m_bitmap(screen, Size, Size, BBT_RAM, m_texels), m_texture()
    {
        for (Tov_Int y = 0; y < Size; ++y)
        {
            for (Tov_Int x = 0; x < Size; ++x)
            {
                m_texels[y * Size + x] = Square(x, y);
            }
        }
        for (Tov_Int step = 0; step < Size; ++step)
        {
            m_texels[step]        = 0xFFF2F6FAU;
            m_texels[step * Size] = 0xFFF2F6FAU;
        }
        for (Tov_Int y = 1; y < 6; ++y)
        {
            for (Tov_Int x = 13; x < 20; ++x)
            {
                m_texels[y * Size + x] = 0xFFFF5C74U;  // a notch at the top
            }
        }
        m_texture.SetBitmap(&m_bitmap);
    }
    Kanvo_Texture& Texture() { return m_texture; }

private:
    static constexpr Tov_Int Size = 32;

    // The frame and the notch are laid over these, not asked for at each texel: gcc 12 makes wrong vectors of that at -O3 for
    // 64-bit ARM.
    static Kanvo_ColorARGB32 Square(Tov_Int x, Tov_Int y)
    {
        const bool    odd   = ((x / 8 + y / 8) & 1) != 0;
        const Tov_Int shade = 255 - 5 * y;
        const auto    level = static_cast<Tov_UInt>(odd ? shade : shade / 2);
        return 0xFF000000U | (level / 4 << 16) | (level * 3 / 4 << 8) | level;
    }

    Tov_UInt           m_texels[Size * Size];
    Kanvo_BitmapARGB32 m_bitmap;
    Kanvo_Texture      m_texture;
};

enum class Renderer
{
    Plain,
    Antialiased,
    Textured
};

constexpr const char* RendererNames[] = {"plain", "ANTIALIAS", "textured"};

//! Prepares the render state for one of the three, and says which flags draw with it.
Tov_Flag Prepare(Kanvo_RenderState& state, Renderer renderer)
{
    state.Set(TEXTUREENABLE, renderer == Renderer::Textured);
    return renderer == Renderer::Plain         ? Tov_Flag{POLY_NONE}
           : renderer == Renderer::Antialiased ? Tov_Flag{POLY_ANTIALIAS}
                                               : Tov_Flag{POLY_USE_RENDERSTATE};
}

//! Points on two circles in turn; with one step per point a star, with two a pentagram and its like.
Outlined Star(Tov_Value x, Tov_Value y, Tov_UInt points, Tov_Value outer, Tov_Value inner)
{
    Outlined star;
    for (Tov_UInt index = 0; index < 2 * points; ++index)
    {
        star.AddAround(x, y, 180.0F * static_cast<Tov_Value>(index) / static_cast<Tov_Value>(points) - 90.0F,
                       index % 2 == 0 ? outer : inner);
    }
    return star;
}

Outlined Ring(Tov_Value x, Tov_Value y, Tov_UInt corners, Tov_UInt steps, Tov_Value radius)
{
    Outlined ring;
    for (Tov_UInt index = 0; index < corners; ++index)
    {
        ring.AddAround(x, y, 360.0F * static_cast<Tov_Value>(index * steps) / static_cast<Tov_Value>(corners) - 90.0F,
                       radius);
    }
    return ring;
}

//! A ribbon that winds inwards.
Outlined Spiral(Tov_Value x, Tov_Value y, Tov_Value outer)
{
    constexpr Tov_UInt Steps = 100;
    Outlined           spiral;
    for (Tov_UInt index = 0; index < 2 * Steps; ++index)
    {
        const bool out  = index < Steps;
        const auto step = static_cast<Tov_Value>(out ? index : 2 * Steps - 1 - index);
        spiral.AddAround(x, y, step * 13.0F, outer * (1.0F - step / 112.0F) - (out ? 0.0F : 3.6F));
    }
    return spiral;
}

//! Teeth that lean, on a bar.
Outlined Comb(Tov_Value x, Tov_Value y, Tov_UInt teeth)
{
    Outlined comb;
    comb.Add(x, y);
    for (Tov_UInt index = 0; index < teeth; ++index)
    {
        const auto left = x + 7.3F * static_cast<Tov_Value>(index);
        const auto tip  = left + 1.1F * static_cast<Tov_Value>(index) - 3.0F;
        comb.Add(left, y + 7.0F).Add(tip, y + 46.0F).Add(tip + 2.4F, y + 46.0F).Add(left + 4.2F, y + 7.0F);
    }
    return comb.Add(x + 7.3F * static_cast<Tov_Value>(teeth), y);
}

//! The plane of the screen: where the texture's corner is seen, and how far one texel leads to the right. Down is a quarter
//! turn from there.
void PlaceFlat(Kanvo_RenderState& state, Tov_Value x, Tov_Value y, Tov_Value ux, Tov_Value uy)
{
    state.Set(TEXTUREMODE, TM_PLANE2D);
    state.Set(TEXORIGINX, x);
    state.Set(TEXORIGINY, y);
    state.Set(TEXUAXISX, ux);
    state.Set(TEXUAXISY, uy);
    state.Set(TEXVAXISX, -uy);
    state.Set(TEXVAXISY, ux);
}

//! A floor: texels 0 to size between the far side, from (left, top) to (right, top), and the near one at the bottom, which
//! is depth times as wide.
void PlaceFloor(Kanvo_RenderState& state, Tov_Value left, Tov_Value right, Tov_Value top, Tov_Value bottom,
                Tov_Value depth, Tov_Value size)
{
    const Tov_Value nearLeft = (left + right) * 0.5F - (right - left) * 0.5F * depth;
    state.Set(TEXTUREMODE, TM_PLANE3D);
    state.Set(TEXORIGINX, left * depth);
    state.Set(TEXORIGINY, top * depth);
    state.Set(TEXORIGINZ, depth);
    state.Set(TEXUAXISX, (right - left) * depth / size);
    state.Set(TEXUAXISY, 0.0F);
    state.Set(TEXUAXISZ, 0.0F);
    state.Set(TEXVAXISX, (nearLeft - left * depth) / size);
    state.Set(TEXVAXISY, (bottom - top * depth) / size);
    state.Set(TEXVAXISZ, (1.0F - depth) / size);
}

}  // namespace

void PolygonShapes(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    Kanvo_RenderState& state = target.GetScreen()->GetRenderState();
    const StateScope   scope(state);
    Tile               tile(target.GetScreen());
    tile.Texture().Use(state);

    Stage(target, "DrawPolygon: stars, circle, bow-tie", "below: 4 x");
    for (Tov_Int column = 0; column < 3; ++column)
    {
        const Tov_Int  left  = 4 + column * 132;
        const auto     x     = static_cast<Tov_Value>(left);
        const Tov_Flag flags = Prepare(state, static_cast<Renderer>(column));
        PlaceFlat(state, x + 10.0F, 40.0F, 0.9F, 0.35F);
        Caption(target, left + 64, 22, RendererNames[column], Ink, Align::Centre);
        Star(x + 32.2F, 64.4F, 5, 29.0F, 11.6F).Draw(target, Amber, flags);
        Ring(x + 95.6F, 64.4F, 5, 2, 29.0F).Draw(target, Rose, flags);     // a pentagram: the middle is empty
        Ring(x + 32.2F, 127.7F, 256, 1, 28.5F).Draw(target, Teal, flags);  // a circle
        Outlined bowTie;
        bowTie.Add(x + 66.3F, 104.2F).Add(x + 125.4F, 151.1F).Add(x + 124.1F, 101.7F).Add(x + 69.8F, 155.5F);
        bowTie.Draw(target, Sky, flags);
        Magnify(target, {left + 80, 62, 32, 18}, left, 162, 4);
        Outline(target, {left, 162, 128, 72}, Edge);
    }
}

void PolygonOutlines(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    Kanvo_RenderState& state = target.GetScreen()->GetRenderState();
    const StateScope   scope(state);
    Tile               tile(target.GetScreen());
    tile.Texture().Use(state);

    Stage(target, "DrawPolygon: comb, spiral, slivers", "below: 4 x");
    for (Tov_Int column = 0; column < 3; ++column)
    {
        const Tov_Int  left  = 4 + column * 132;
        const auto     x     = static_cast<Tov_Value>(left);
        const Tov_Flag flags = Prepare(state, static_cast<Renderer>(column));
        PlaceFlat(state, x + 10.0F, 40.0F, 0.9F, 0.35F);
        Caption(target, left + 64, 22, RendererNames[column], Ink, Align::Centre);
        Comb(x + 8.4F, 36.3F, 14).Draw(target, Amber, flags);
        Spiral(x + 32.0F, 124.0F, 33.0F).Draw(target, Teal, flags);
        // Triangles a third of a pixel to two pixels wide.
        for (Tov_UInt index = 0; index < 18; ++index)
        {
            const auto degrees = 20.0F * static_cast<Tov_Value>(index) + 3.0F;
            const auto width   = 0.33F + 0.1F * static_cast<Tov_Value>(index);
            Outlined   sliver;
            sliver.AddAround(x + 96.0F, 124.0F, degrees, 6.0F);
            sliver.AddAround(x + 96.0F, 124.0F, degrees + width, 33.0F);
            sliver.AddAround(x + 96.0F, 124.0F, degrees - width, 33.0F);
            sliver.Draw(target, Ink, flags);
        }
        Magnify(target, {left + 64, 94, 32, 18}, left, 162, 4);
        Outline(target, {left, 162, 128, 72}, Edge);
    }
}

void PolygonSeams(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    struct Way
    {
        const char* name;
        Tov_Flag    flags;
        bool        translucent;
    };
    constexpr Way               Ways[]    = {{"plain", POLY_NONE, false},
                                             {"half opaque", POLY_USE_RENDERSTATE, true},
                                             {"ANTIALIAS", POLY_ANTIALIAS, false},
                                             {"and EXTRUDE", POLY_ANTIALIAS | POLY_EXTRUDE | POLY_HINT_CW, false}};
    constexpr Kanvo_ColorARGB32 Rainbow[] = {Rose, Amber, Teal, Sky};
    constexpr Tov_UInt          Slices    = 20;

    Kanvo_RenderState& state = target.GetScreen()->GetRenderState();
    const StateScope   scope(state);
    state.Set(TEXTUREENABLE, false);
    state.Set(ALPHA, 128U);

    Stage(target, "DrawPolygon: triangles that share sides", "below: 5 x");
    for (Tov_Int column = 0; column < 4; ++column)
    {
        const Way&    way  = Ways[column];
        const Tov_Int left = 4 + column * 99;
        const auto    x    = static_cast<Tov_Value>(left) + 47.3F;
        state.Set(ALPHAENABLE, way.translucent);
        Caption(target, left + 47, 22, way.name, Ink, Align::Centre);
        for (Tov_UInt index = 0; index < Slices; ++index)
        {
            const auto degrees = 360.0F * static_cast<Tov_Value>(index) / static_cast<Tov_Value>(Slices) + 4.0F;
            Outlined   slice;
            slice.Add(x, 84.4F).AddAround(x, 84.4F, degrees, 46.0F);
            slice.AddAround(x, 84.4F, degrees + 360.0F / static_cast<Tov_Value>(Slices), 46.0F);
            slice.Draw(target, Rainbow[index % 4], way.flags);
        }
        Magnify(target, {left + 28, 72, 19, 20}, left, 136, 5);
        Outline(target, {left, 136, 95, 100}, Edge);
    }
}

void PolygonTextures(Kanvo_BitmapARGB32& target, const Input& input)
{
    struct Writeback
    {
        const char* name;
        bool        mask;  //!< the texture is a map of coverage
        Tov_UInt    blending;
        bool        alpha;
    };
    constexpr Writeback Writebacks[] = {{"NORMAL", false, TB_NORMAL, false},
                                        {"alpha 150", false, TB_NORMAL, true},
                                        {"ADD", false, TB_ADD, false},
                                        {"COLOR", true, TB_COLOR, false},
                                        {"alpha 150", true, TB_COLOR, true}};

    Kanvo_RenderState& state = target.GetScreen()->GetRenderState();
    const StateScope   scope(state);
    Tile               tile(target.GetScreen());
    Kanvo_Texture      mask(input.maskGlyph.a8);
    state.Set(TEXTUREENABLE, true);
    state.Set(ALPHA, 150U);

    Stage(target, "DrawPolygon: textures", "PLANE2D, PLANE3D");
    Gradient(target, {0, 34, 400, 102}, 0xFF5A3A2AU, 0xFF24506EU);
    Gradient(target, {0, 136, 400, 104}, 0xFF5A3A2AU, 0xFF24506EU);
    for (Tov_Int column = 0; column < 5; ++column)
    {
        const Writeback& writeback = Writebacks[column];
        const Tov_Int    left      = column * 80;
        const auto       x         = static_cast<Tov_Value>(left);
        Caption(target, left + 40, 21, writeback.name, Ink, Align::Centre);
        (writeback.mask ? mask : tile.Texture()).Use(state);
        state.Set(TEXTUREBLENDING, writeback.blending);
        state.Set(ALPHAENABLE, writeback.alpha);

        Outlined turned;
        turned.Add(x + 22.0F, 38.0F).Add(x + 77.0F, 60.0F).Add(x + 57.0F, 131.0F).Add(x + 3.0F, 108.0F);
        PlaceFlat(state, x + 22.0F, 38.0F, 0.86F, 0.34F);
        turned.Draw(target, Amber, POLY_USE_RENDERSTATE);

        Outlined floor;
        floor.Add(x + 28.0F, 141.0F).Add(x + 52.0F, 141.0F).Add(x + 79.0F, 236.0F).Add(x + 1.0F, 236.0F);
        PlaceFloor(state, x + 28.0F, x + 52.0F, 141.0F, 236.0F, 3.25F, 128.0F);
        floor.Draw(target, Amber, POLY_USE_RENDERSTATE);
    }
}

void PolygonGauge(Kanvo_BitmapARGB32& target, const Input& /*input*/)
{
    constexpr Tov_Value X     = 150.5F;
    constexpr Tov_Value Y     = 128.5F;
    constexpr Tov_Value First = 135.0F;  // degrees of the scale
    constexpr Tov_Value Sweep = 270.0F;

    Stage(target, "A gauge of polygons", "right: 4 x");
    Ring(X, Y, 200, 1, 104.0F).Draw(target, Panel, POLY_ANTIALIAS);
    Ring(X, Y, 200, 1, 100.0F).Draw(target, 0xFF0B1017U, POLY_ANTIALIAS);

    // Bands of the scale: the two arcs of each are one outline.
    constexpr struct
    {
        Tov_Value         from;
        Tov_Value         to;
        Kanvo_ColorARGB32 colour;
    } Bands[] = {{0.0F, 0.6F, Teal}, {0.6F, 0.82F, Amber}, {0.82F, 1.0F, Rose}};
    for (const auto& band : Bands)
    {
        constexpr Tov_UInt Steps = 40;
        Outlined           arc;
        for (Tov_UInt index = 0; index < 2 * Steps; ++index)
        {
            const bool outer = index < Steps;
            const auto step  = static_cast<Tov_Value>(outer ? index : 2 * Steps - 1 - index) / (Steps - 1.0F);
            arc.AddAround(X, Y, First + Sweep * (band.from + (band.to - band.from) * step), outer ? 96.0F : 86.0F);
        }
        arc.Draw(target, band.colour, POLY_ANTIALIAS);
    }

    // Marks: one shape, turned into place.
    constexpr Kanvo_Coord2D Long[]  = {{66, -1.6F}, {83, -2.2F}, {83, 2.2F}, {66, 1.6F}};
    constexpr Kanvo_Coord2D Short[] = {{76, -0.6F}, {83, -0.6F}, {83, 0.6F}, {76, 0.6F}};
    const Kanvo_Primitive   longMark(PT_POLYGON, Long, 4, Ink);
    const Kanvo_Primitive   shortMark(PT_POLYGON, Short, 4, Quiet);
    for (Tov_UInt mark = 0; mark <= 40; ++mark)
    {
        const Tov_Value     degrees = First + Sweep * static_cast<Tov_Value>(mark) / 40.0F;
        const Kanvo_Matrix3 turn    = Kanvo_Matrix3::ScaleRotateMove({1, 1}, degrees, {X, Y});
        target.DrawPrimitive(mark % 5 == 0 ? longMark : shortMark, turn, Kanvo_Vector3(0, 0, 0), POLY_ANTIALIAS);
        if (mark % 5 == 0)
        {
            Outlined place;
            place.AddAround(X, Y, degrees, 56.0F);
            Caption(target, static_cast<Tov_Int>(place.Corners()->x), static_cast<Tov_Int>(place.Corners()->y) - 4,
                    Words().Number(mark * 5).Text(), Quiet, Align::Centre);
        }
    }

    // The needle with its shadow, and the hub.
    constexpr Kanvo_Coord2D Needle[] = {{-22, -3.5F}, {0, -4.5F}, {80, -0.7F}, {80, 0.7F}, {0, 4.5F}, {-22, 3.5F}};
    const Kanvo_Matrix3     shadow   = Kanvo_Matrix3::ScaleRotateMove({1, 1}, First + Sweep * 0.71F, {X + 3, Y + 4});
    const Kanvo_Matrix3     turn     = Kanvo_Matrix3::ScaleRotateMove({1, 1}, First + Sweep * 0.71F, {X, Y});
    target.DrawPrimitive(Kanvo_Primitive(PT_POLYGON, Needle, 6, 0x80000000U), shadow, Kanvo_Vector3(0, 0, 0),
                         POLY_ANTIALIAS);
    target.DrawPrimitive(Kanvo_Primitive(PT_POLYGON, Needle, 6, Rose), turn, Kanvo_Vector3(0, 0, 0), POLY_ANTIALIAS);
    Ring(X, Y, 60, 1, 11.0F).Draw(target, Edge, POLY_ANTIALIAS);
    Ring(X, Y, 60, 1, 8.0F).Draw(target, Panel, POLY_ANTIALIAS);

    Magnify(target, {184, 62, 34, 27}, 260, 22, 4);
    Outline(target, {260, 22, 136, 108}, Edge);
    Magnify(target, {133, 110, 34, 26}, 260, 134, 4);
    Outline(target, {260, 134, 136, 104}, Edge);
}

}  // namespace scenes
