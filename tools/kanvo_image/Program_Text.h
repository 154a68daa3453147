// Program_Text: numbers, tables and other people's text put into words, the same on every machine and in every locale.
#ifndef PROGRAM_TEXT_H
#define PROGRAM_TEXT_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kanvo_image
{

//! 1234567 as "1,234,567".
std::string Grouped(std::uint64_t value);

//! "1 picture", "2 pictures".
std::string Counted(std::uint64_t count, const std::string& thing);

std::string Fixed(double value, int decimals);

//! Thousandths as "0.125".
std::string MilliText(std::uint64_t milli);

//! part of whole, "12.3 %"; of nothing it is "-".
std::string Percent(std::uint64_t part, std::uint64_t whole);

//! "480 x 272".
std::string SizeText(std::uint64_t width, std::uint64_t height);

//! A colour as it stands in an image's palette, "FF203040".
std::string ColourText(std::uint32_t argb);

//! Text that stays on its line whatever a file is called: control characters become '?'.
std::string OneLine(std::string_view text);

//! Cut so that it takes at most so many places on a terminal.
std::string Shortened(const std::string& text, std::size_t places);

std::string CsvField(std::string_view text);
std::string Base64(const std::vector<std::uint8_t>& bytes);

//! Columns as wide as their widest text. A column whose title begins with '>' is set flush right, without the '>'.
class Table
{
public:
    explicit Table(const std::vector<std::string>& titles);

    void        Add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }
    std::string Text() const;

private:
    std::vector<bool>                     m_right;
    std::vector<std::vector<std::string>> m_rows;  //!< the first holds the titles
};

}  // namespace kanvo_image

#endif
