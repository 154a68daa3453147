// Program_Text: see the header.
#include "Program_Text.h"

#include <algorithm>
#include <cstdio>

namespace kanvo_image
{
namespace
{

//! Whether a byte goes on with a character of UTF-8 that began before it.
bool Continues(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::size_t PlacesOf(const std::string& text)
{
    return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), Continues));
}

}  // namespace

std::string Grouped(std::uint64_t value)
{
    std::string text = std::to_string(value);
    for (std::size_t place = text.size(); place > 3; place -= 3)
    {
        text.insert(place - 3, ",");
    }
    return text;
}

std::string Counted(std::uint64_t count, const std::string& thing)
{
    return Grouped(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string Fixed(double value, int decimals)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

std::string MilliText(std::uint64_t milli)
{
    return std::to_string(milli / 1000) + "." + std::to_string(1000 + milli % 1000).substr(1);
}

std::string Percent(std::uint64_t part, std::uint64_t whole)
{
    return whole == 0 ? "-" : Fixed(100.0 * static_cast<double>(part) / static_cast<double>(whole), 1) + " %";
}

std::string SizeText(std::uint64_t width, std::uint64_t height)
{
    return std::to_string(width) + " x " + std::to_string(height);
}

std::string ColourText(std::uint32_t argb)
{
    char text[9];
    std::snprintf(text, sizeof text, "%08lX", static_cast<unsigned long>(argb));
    return text;
}

std::string OneLine(std::string_view text)
{
    std::string line(text);
    for (char& character : line)
    {
        const auto code = static_cast<unsigned char>(character);
        if (code < 32 || code == 127)
        {
            character = '?';
        }
    }
    return line;
}

std::string Shortened(const std::string& text, std::size_t places)
{
    std::size_t end = 0;
    while (end < text.size() && (places > 0 || Continues(text[end])))
    {
        places -= Continues(text[end]) ? 0 : 1;
        ++end;
    }
    return text.substr(0, end);
}

std::string CsvField(std::string_view text)
{
    if (text.find_first_of(",\"") == std::string_view::npos)
    {
        return std::string(text);
    }
    std::string field = "\"";
    for (const char character : text)
    {
        field += character;
        if (character == '"')
        {
            field += '"';
        }
    }
    return field + '"';
}

std::string Base64(const std::vector<std::uint8_t>& bytes)
{
    constexpr const char* Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3)
    {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
        std::uint32_t     word  = 0;
        for (std::size_t index = 0; index < 3; ++index)
        {
            word = word << 8 | (index < count ? bytes[at + index] : 0u);
        }
        for (std::size_t index = 0; index < 4; ++index)
        {
            text += index <= count ? Digits[word >> (18 - 6 * index) & 63] : '=';
        }
    }
    return text;
}

Table::Table(const std::vector<std::string>& titles)
{
    m_rows.emplace_back();
    for (const std::string& title : titles)
    {
        m_right.push_back(title.rfind('>', 0) == 0);
        m_rows[0].push_back(m_right.back() ? title.substr(1) : title);
    }
}

std::string Table::Text() const
{
    std::vector<std::size_t> widths(m_right.size());
    for (const auto& row : m_rows)
    {
        for (std::size_t column = 0; column < row.size(); ++column)
        {
            widths[column] = std::max(widths[column], PlacesOf(row[column]));
        }
    }
    std::string text;
    for (const auto& row : m_rows)
    {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column)
        {
            const std::string padding(widths[column] - PlacesOf(row[column]), ' ');
            line += column == 0 ? "" : "  ";
            line += m_right[column] ? padding + row[column] : row[column] + padding;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

}  // namespace kanvo_image
