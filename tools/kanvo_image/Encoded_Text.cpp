// Encoded_Text: see the header.
#include "Encoded_Text.h"

#include "Program_Text.h"

namespace kanvo_image
{

std::uint64_t FileSize(const image::Encoded& encoded)
{
    return encoded.data.size() + (image::IsRle(encoded.format) ? 0 : image::RawHeader::Size);
}

std::string FidelityText(const image::Encoded& encoded)
{
    if (encoded.IsLossless())
    {
        return "lossless";
    }
    if (encoded.format == image::Format::A8)
    {
        return "coverage alone";  // to be drawn in a colour; there was none to keep
    }
    return encoded.error.largestSeen == 0 ? "every visible colour kept" : DifferenceText(encoded.error);
}

std::string PaletteText(const image::Encoded& encoded)
{
    switch (encoded.origin)
    {
    case image::PaletteOrigin::None: return "";
    case image::PaletteOrigin::File: return Counted(encoded.colours, "colour") + " in the file's order";
    case image::PaletteOrigin::Quantised: return "reduced to " + Counted(encoded.colours, "colour");
    default: return Counted(encoded.colours, "colour");
    }
}

}  // namespace kanvo_image
