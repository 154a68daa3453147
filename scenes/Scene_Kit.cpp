// Scene_Kit: see the header.
#include "Scene_Kit.h"

#include "Kanvo_DebugFont.h"

namespace scenes
{

// ---- texts ---------------------------------------------------------------------------------------------------------

void Words::Put(char character)
{
    if (m_length < Room - 1)
    {
        m_text[m_length++] = character;
    }
}

Words& Words::Add(const char* text)
{
    while (*text != '\0')
    {
        Put(*text++);
    }
    return *this;
}

Words& Words::Number(Tov_UInt value)
{
    if (value >= 10)
    {
        Number(value / 10);
    }
    Put(static_cast<char>('0' + value % 10));
    return *this;
}

Words& Words::Hex(Tov_UInt value, int digits)
{
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
    {
        Put("0123456789ABCDEF"[value >> shift & 15]);
    }
    return *this;
}

namespace
{

//! Where a text of that many pixels starts.
Tov_Int LeftOf(Tov_Int x, Tov_UInt width, Align align)
{
    const auto extent = static_cast<Tov_Int>(width);
    return align == Align::Left ? x : align == Align::Centre ? x - extent / 2 : x - extent;
}

}  // namespace

void Caption(Kanvo_BitmapARGB32& target, Tov_Int x, Tov_Int y, const char* text, Kanvo_ColorARGB32 colour, Align align)
{
    Tov_UInt width  = 0;
    Tov_UInt height = 0;
    target.DebugTextMeasure(text, 0, 0, width, height);
    target.DebugText(text, static_cast<Tov_UInt>(LeftOf(x, width, align)), static_cast<Tov_UInt>(y), colour);
}

void Headline(Kanvo_BitmapARGB32& target, Tov_Int x, Tov_Int y, const char* text, Tov_UInt factor,
              Kanvo_ColorARGB32 colour, Align align)
{
    Tov_UInt length = 0;
    while (text[length] != '\0')
    {
        ++length;
    }
    const auto step = static_cast<Tov_Int>(factor);
    Tov_Int    left = LeftOf(x, length * factor * static_cast<Tov_UInt>(Kanvo_DebugFont_Width), align);
    for (; *text != '\0'; ++text, left += Kanvo_DebugFont_Width * step)
    {
        const Tov_UByte* glyph  = nullptr;
        Tov_Int          width  = 0;
        Tov_Int          height = 0;
        if (!DebugFont_GetChar(static_cast<unsigned char>(*text), glyph, width, height))
        {
            continue;
        }
        for (Tov_Int pixel = 0; pixel < width * height; ++pixel)
        {
            if (glyph[pixel] != 0)
            {
                Fill(target, {left + pixel % width * step, y + pixel / width * step, factor, factor}, colour);
            }
        }
    }
}

// ---- areas ---------------------------------------------------------------------------------------------------------

void Fill(Kanvo_BitmapARGB32& target, const Box& box, Kanvo_ColorARGB32 colour)
{
    target.FillRect(box.width, box.height, box.x, box.y, colour, 0);
}

void Outline(Kanvo_BitmapARGB32& target, const Box& box, Kanvo_ColorARGB32 colour)
{
    const auto right  = box.x + static_cast<Tov_Int>(box.width);
    const auto bottom = box.y + static_cast<Tov_Int>(box.height);
    Fill(target, {box.x - 1, box.y - 1, box.width + 2, 1}, colour);
    Fill(target, {box.x - 1, bottom, box.width + 2, 1}, colour);
    Fill(target, {box.x - 1, box.y, 1, box.height}, colour);
    Fill(target, {right, box.y, 1, box.height}, colour);
}

void Checkerboard(Kanvo_BitmapARGB32& target, const Box& box, Tov_UInt cell, Kanvo_ColorARGB32 light,
                  Kanvo_ColorARGB32 dark)
{
    Fill(target, box, light);
    for (Tov_UInt y = 0; y < box.height; y += cell)
    {
        for (Tov_UInt x = y / cell % 2 * cell; x < box.width; x += 2 * cell)
        {
            const Tov_UInt width  = box.width - x < cell ? box.width - x : cell;
            const Tov_UInt height = box.height - y < cell ? box.height - y : cell;
            Fill(target, {box.x + static_cast<Tov_Int>(x), box.y + static_cast<Tov_Int>(y), width, height}, dark);
        }
    }
}

void Gradient(Kanvo_BitmapARGB32& target, const Box& box, Kanvo_ColorARGB32 top, Kanvo_ColorARGB32 bottom)
{
    const Tov_UInt last = box.height > 1 ? box.height - 1 : 1;
    for (Tov_UInt row = 0; row < box.height; ++row)
    {
        Kanvo_ColorARGB32 colour = 0;
        for (int shift = 0; shift < 32; shift += 8)
        {
            const Tov_UInt from = top >> shift & 255;
            const Tov_UInt to   = bottom >> shift & 255;
            colour |= (from * (last - row) + to * row + last / 2) / last << shift;
        }
        Fill(target, {box.x, box.y + static_cast<Tov_Int>(row), box.width, 1}, colour);
    }
}

void Stage(Kanvo_BitmapARGB32& target, const char* title, const char* note)
{
    const auto width = static_cast<Tov_Int>(target.GetWidth());
    target.Clear(Night);
    Fill(target, {0, 0, target.GetWidth(), 16}, Panel);
    Fill(target, {0, 16, target.GetWidth(), 1}, Edge);
    Fill(target, {0, 0, 4, 16}, Amber);
    Caption(target, 10, 4, title, Ink);
    Caption(target, width - 6, 4, note, Quiet, Align::Right);
}

// ---- pixels --------------------------------------------------------------------------------------------------------

Kanvo_PixelARGB32 PixelAt(const Kanvo_BitmapARGB32& bitmap, Tov_Int x, Tov_Int y)
{
    Kanvo_OffsetARGB32 offset;
    Kanvo_PixelARGB32_Access::GetOffset(&bitmap, static_cast<Tov_UInt>(x), static_cast<Tov_UInt>(y), offset);
    return Kanvo_PixelARGB32_Access::GetPixel(offset);
}

void Magnify(Kanvo_BitmapARGB32& target, const Box& part, Tov_Int x, Tov_Int y, Tov_UInt factor)
{
    const auto step = static_cast<Tov_Int>(factor);
    for (Tov_Int row = 0; row < static_cast<Tov_Int>(part.height); ++row)
    {
        for (Tov_Int column = 0; column < static_cast<Tov_Int>(part.width); ++column)
        {
            const Kanvo_PixelARGB32 pixel = PixelAt(target, part.x + column, part.y + row);
            Fill(target, {x + column * step, y + row * step, factor, factor}, 0xFF000000U | pixel);
        }
    }
}

void Look(Kanvo_BitmapARGB32& target, const Box& part, Tov_Int x, Tov_Int y, Tov_UInt factor)
{
    Magnify(target, part, x, y, factor);
    Outline(target, {x, y, part.width * factor, part.height * factor}, Edge);
    Outline(target, part, Amber);
}

void ShowAlpha(Kanvo_BitmapARGB32& target, const Kanvo_BitmapARGB32& from, const Box& part, Tov_Int x, Tov_Int y)
{
    for (Tov_Int row = 0; row < static_cast<Tov_Int>(part.height); ++row)
    {
        for (Tov_Int column = 0; column < static_cast<Tov_Int>(part.width); ++column)
        {
            const Tov_UInt alpha = PixelAt(from, part.x + column, part.y + row) >> 24;
            Fill(target, {x + column, y + row, 1, 1}, 0xFF000000U | alpha * 0x010101U);
        }
    }
}

void Put(Kanvo_BitmapARGB32& target, Kanvo_Bitmap* source, const Box& part, Tov_Int x, Tov_Int y, Tov_UByte alpha)
{
    target.Blit(source, part.width, part.height, static_cast<Tov_UInt>(part.x), static_cast<Tov_UInt>(part.y), x, y, 0,
                alpha, 0);
}

void Paint(Kanvo_BitmapARGB32& target, Kanvo_Bitmap* map, const Box& part, Tov_Int x, Tov_Int y,
           Kanvo_ColorARGB32 colour, Tov_UByte alpha)
{
    target.BlitColor(map, part.width, part.height, static_cast<Tov_UInt>(part.x), static_cast<Tov_UInt>(part.y), x, y,
                     colour, 0, alpha);
}

}  // namespace scenes
