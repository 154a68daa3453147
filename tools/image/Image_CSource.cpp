// Image_CSource: see the header.
#include "Image_CSource.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace image
{
namespace
{

// Character classes of our own: those of the C library depend on the locale.
constexpr bool IsLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}
constexpr bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

//! Keywords of C and C++ up to now, and main. Sorted.
constexpr std::array<std::string_view, 96> Reserved{"alignas",     "alignof",
                                                    "and",         "and_eq",
                                                    "asm",         "auto",
                                                    "bitand",      "bitor",
                                                    "bool",        "break",
                                                    "case",        "catch",
                                                    "char",        "char16_t",
                                                    "char32_t",    "char8_t",
                                                    "class",       "co_await",
                                                    "co_return",   "co_yield",
                                                    "compl",       "concept",
                                                    "const",       "const_cast",
                                                    "consteval",   "constexpr",
                                                    "constinit",   "continue",
                                                    "decltype",    "default",
                                                    "delete",      "do",
                                                    "double",      "dynamic_cast",
                                                    "else",        "enum",
                                                    "explicit",    "export",
                                                    "extern",      "false",
                                                    "float",       "for",
                                                    "friend",      "goto",
                                                    "if",          "inline",
                                                    "int",         "long",
                                                    "main",        "mutable",
                                                    "namespace",   "new",
                                                    "noexcept",    "not",
                                                    "not_eq",      "nullptr",
                                                    "operator",    "or",
                                                    "or_eq",       "private",
                                                    "protected",   "public",
                                                    "register",    "reinterpret_cast",
                                                    "requires",    "restrict",
                                                    "return",      "short",
                                                    "signed",      "sizeof",
                                                    "static",      "static_assert",
                                                    "static_cast", "struct",
                                                    "switch",      "template",
                                                    "this",        "thread_local",
                                                    "throw",       "true",
                                                    "try",         "typedef",
                                                    "typeid",      "typename",
                                                    "typeof",      "typeof_unqual",
                                                    "union",       "unsigned",
                                                    "using",       "virtual",
                                                    "void",        "volatile",
                                                    "wchar_t",     "while",
                                                    "xor",         "xor_eq"};

std::string Upper(std::string_view text)
{
    std::string upper(text);
    for (char& character : upper)
    {
        if (character >= 'a' && character <= 'z')
        {
            character = static_cast<char>(character - 'a' + 'A');
        }
    }
    return upper;
}

//! The library's name for a format's bitmap type.
const char* TypeName(Format format)
{
    switch (format)
    {
    case Format::Rgb32: return "BM_RGB32";
    case Format::Rle8: return "BM_RGB32RLE8";
    case Format::Rle16: return "BM_RGB32RLE16";
    case Format::Argb32: return "BM_ARGB32";
    case Format::A8: return "BM_ALPHA8";
    default: return "BM_RGB565";
    }
}

void CheckName(std::string_view name)
{
    if (!IsCName(name))
    {
        throw std::invalid_argument("the name is not an identifier of C and C++");
    }
}

//! The first line of both files.
std::string Title(const Encoded& encoded, std::string_view name)
{
    return "/* " + std::string(name) + ": an image of " + std::to_string(encoded.width) + " x " +
           std::to_string(encoded.height) + " pixels, " + FormatName(encoded.format) +
           ". Made by kanvo-image; to change it, change the picture. */\n";
}

std::string Declaration(std::string_view name, const std::string& size)
{
    return "#ifdef __cplusplus\n"
           "extern \"C\"\n"
           "{\n"
           "#endif\n"
           "extern const unsigned char " +
           std::string(name) + "[" + size +
           "];\n"
           "#ifdef __cplusplus\n"
           "}\n"
           "#endif\n";
}

//! KANVO_ALIGN4, unless a project brings its own.
constexpr const char* Alignment = R"(/* The array is read in words: it starts at a multiple of four. */
#ifndef KANVO_ALIGN4
#if defined(__cplusplus)
#define KANVO_ALIGN4 alignas(4)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define KANVO_ALIGN4 _Alignas(4)
#elif defined(__GNUC__)
#define KANVO_ALIGN4 __attribute__((aligned(4)))
#else
#error "Define KANVO_ALIGN4 as what makes this compiler align an object to four bytes."
#endif
#endif
)";

//! Sixteen bytes a line.
void AppendBytes(std::string& text, const std::vector<std::uint8_t>& bytes)
{
    constexpr char digits[] = "0123456789ABCDEF";
    text.reserve(text.size() + bytes.size() * 6 + bytes.size() / 16 * 4 + 16);
    for (std::size_t offset = 0; offset < bytes.size(); ++offset)
    {
        text += offset % 16 == 0 ? "    0x" : " 0x";
        text += digits[bytes[offset] >> 4];
        text += digits[bytes[offset] & 15];
        text += offset + 1 == bytes.size() ? "\n" : offset % 16 == 15 ? ",\n" : ",";
    }
}

}  // namespace

std::string CNameFor(std::string_view text)
{
    std::string name = "image";
    bool        gap  = true;  // between words, and behind the prefix
    for (const char character : text)
    {
        if (!IsLetter(character) && !IsDigit(character))
        {
            gap = true;
            continue;
        }
        if (gap)
        {
            name += '_';
        }
        name += character;
        gap = false;
    }
    return name;
}

bool IsCName(std::string_view name)
{
    return !name.empty() && IsLetter(name.front()) && name.find("__") == std::string_view::npos &&
           std::all_of(name.begin(), name.end(),
                       [](char character) { return IsLetter(character) || IsDigit(character) || character == '_'; }) &&
           !std::binary_search(Reserved.begin(), Reserved.end(), name);
}

std::string CHeader(const Encoded& encoded, std::string_view name)
{
    CheckName(name);
    const std::string upper  = Upper(name);
    const auto        define = [&](const char* what, std::size_t number, const std::string& remark)
    { return "#define " + upper + "_" + what + " " + std::to_string(number) + remark + "\n"; };

    std::string text = Title(encoded, name);
    text += "#ifndef " + upper + "_H\n#define " + upper + "_H\n\n";
    text += define("TYPE", static_cast<std::size_t>(encoded.format),
                   std::string(" /* ") + TypeName(encoded.format) + " */");
    text += define("WIDTH", encoded.width, "");
    text += define("HEIGHT", encoded.height, "");
    if (!IsRle(encoded.format))
    {
        text += define("PITCH", encoded.Pitch(), " /* bytes from row to row */");
    }
    text += define("SIZE", encoded.data.size(), " /* bytes */");
    text += "\n" + Declaration(name, upper + "_SIZE") + "\n#endif\n";
    return text;
}

std::string CSource(const Encoded& encoded, std::string_view name, bool withHeader)
{
    CheckName(name);
    const std::string size = std::to_string(encoded.data.size());
    std::string       text = Title(encoded, name);
    text += withHeader ? "#include \"" + std::string(name) + ".h\"\n" : Declaration(name, size);
    text += std::string("\n") + Alignment + "\nKANVO_ALIGN4 const unsigned char " + std::string(name) + "[" + size +
            "] = {\n";
    AppendBytes(text, encoded.data);
    text += "};\n";
    return text;
}

}  // namespace image
