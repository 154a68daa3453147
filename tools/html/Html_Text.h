// Html_Text: text as HTML shows it. For the pages of the gallery and of the image tool.
#ifndef HTML_TEXT_H
#define HTML_TEXT_H

#include <string>
#include <string_view>

//! Also inside quoted attributes.
inline std::string HtmlEscaped(std::string_view text)
{
    std::string escaped;
    for (const char character : text)
    {
        switch (character)
        {
        case '&': escaped += "&amp;"; break;
        case '<': escaped += "&lt;"; break;
        case '>': escaped += "&gt;"; break;
        case '"': escaped += "&quot;"; break;
        default: escaped += character;
        }
    }
    return escaped;
}

#endif
