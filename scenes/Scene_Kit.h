// Scene_Kit: what the scenes are drawn with: colours that belong together, boxes, captions, a checkerboard, a magnifying
// glass. Everything ends in FillRect and DebugText of the target.
#ifndef SCENE_KIT_H
#define SCENE_KIT_H

#include "Scene.h"

namespace scenes
{

// One set of colours for all scenes.
constexpr Kanvo_ColorARGB32 Night = 0xFF10161FU;  //!< behind everything
constexpr Kanvo_ColorARGB32 Panel = 0xFF1C2633U;
constexpr Kanvo_ColorARGB32 Edge  = 0xFF3A4A60U;
constexpr Kanvo_ColorARGB32 Ink   = 0xFFF2F6FAU;
constexpr Kanvo_ColorARGB32 Quiet = 0xFF93A5BCU;
constexpr Kanvo_ColorARGB32 Amber = 0xFFFFB224U;
constexpr Kanvo_ColorARGB32 Teal  = 0xFF22C7B0U;
constexpr Kanvo_ColorARGB32 Rose  = 0xFFFF5C74U;
constexpr Kanvo_ColorARGB32 Sky   = 0xFF4AA8FFU;

constexpr Kanvo_Color MagentaKey    = 0x00FF00FFU;  //!< as ARGB32 and RGB32 compare it
constexpr Kanvo_Color MagentaKey565 = 0xF81FU;

struct Box
{
    Tov_Int  x;
    Tov_Int  y;
    Tov_UInt width;
    Tov_UInt height;
};

//! A short text put together from words and numbers, without the C library.
class Words
{
public:
    Words& Add(const char* text);
    Words& Number(Tov_UInt value);
    Words& Hex(Tov_UInt value, int digits);

    const char* Text() const { return m_text; }

private:
    void Put(char character);

    static constexpr int Room = 64;

    char m_text[Room] = {};
    int  m_length     = 0;
};

void Fill(Kanvo_BitmapARGB32& target, const Box& box, Kanvo_ColorARGB32 colour);

//! A line of one pixel around the box, outside it.
void Outline(Kanvo_BitmapARGB32& target, const Box& box, Kanvo_ColorARGB32 colour);

void Checkerboard(Kanvo_BitmapARGB32& target, const Box& box, Tov_UInt cell = 8, Kanvo_ColorARGB32 light = 0xFFB8C2CEU,
                  Kanvo_ColorARGB32 dark = 0xFF7D8A9AU);

//! Rows of one colour each, from top to bottom.
void Gradient(Kanvo_BitmapARGB32& target, const Box& box, Kanvo_ColorARGB32 top, Kanvo_ColorARGB32 bottom);

enum class Align
{
    Left,
    Centre,
    Right
};

//! Text whose first line starts at, is centred on, or ends before x.
void Caption(Kanvo_BitmapARGB32& target, Tov_Int x, Tov_Int y, const char* text, Kanvo_ColorARGB32 colour = Quiet,
             Align align = Align::Left);

//! Text with every pixel of the font as a square of factor x factor.
void Headline(Kanvo_BitmapARGB32& target, Tov_Int x, Tov_Int y, const char* text, Tov_UInt factor,
              Kanvo_ColorARGB32 colour, Align align = Align::Left);

//! The background and the title line that scenes share, 17 pixels high. What is below belongs to the scene.
void Stage(Kanvo_BitmapARGB32& target, const char* title, const char* note);

Kanvo_PixelARGB32 PixelAt(const Kanvo_BitmapARGB32& bitmap, Tov_Int x, Tov_Int y);

//! Draws a part of the target again at (x, y), every pixel as a square of factor x factor. Shown opaque.
void Magnify(Kanvo_BitmapARGB32& target, const Box& part, Tov_Int x, Tov_Int y, Tov_UInt factor);

//! The same framed, and the part framed too.
void Look(Kanvo_BitmapARGB32& target, const Box& part, Tov_Int x, Tov_Int y, Tov_UInt factor);

//! Draws the alpha of a part of a bitmap, which may be the target, at (x, y) as levels of grey.
void ShowAlpha(Kanvo_BitmapARGB32& target, const Kanvo_BitmapARGB32& from, const Box& part, Tov_Int x, Tov_Int y);

// Blit and BlitColor with what rarely changes left out: a box of the source or map, without flags.
void Put(Kanvo_BitmapARGB32& target, Kanvo_Bitmap* source, const Box& part, Tov_Int x, Tov_Int y,
         Tov_UByte alpha = 255);
void Paint(Kanvo_BitmapARGB32& target, Kanvo_Bitmap* map, const Box& part, Tov_Int x, Tov_Int y,
           Kanvo_ColorARGB32 colour, Tov_UByte alpha = 255);

//! What is drawn once with each of several flags.
struct NamedFlags
{
    const char* name;
    Tov_Flag    flags;
};

//! Of lines and dots.
constexpr NamedFlags Qualities[] = {
    {"plain", Kanvo_LF_NONE}, {"ANTIALIAS", Kanvo_LF_ANTIALIAS}, {"HQ_AA", Kanvo_LF_HQ_AA}};

//! The opacity that blends an ARGB32 picture as if at full strength: at 255 it would be copied.
constexpr Tov_UByte Blended = 254;

}  // namespace scenes

#endif
