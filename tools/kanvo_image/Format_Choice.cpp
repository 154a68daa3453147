// Format_Choice: see the header.
#include "Format_Choice.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Image_Rle.h"
#include "Program_Text.h"

namespace kanvo_image
{
namespace
{

std::string SizeOf(const image::Candidate& candidate)
{
    return std::string(image::FormatName(candidate.format)) + " with " + Counted(candidate.bytes, "byte");
}

}  // namespace

image::Choice ChooseFormat(const image::Picture& picture, FilePalette filePalette)
{
    image::Choice choice = image::ChooseFormat(picture);
    if (filePalette == FilePalette::Drop || !picture.IsIndexed())
    {
        return choice;
    }
    const auto candidateOf = [&](image::Format format)
    {
        return *std::find_if(choice.candidates.begin(), choice.candidates.end(),
                             [=](const image::Candidate& candidate) { return candidate.format == format; });
    };
    const image::Candidate ownPalette = candidateOf(choice.format);

    for (image::Candidate& candidate : choice.candidates)
    {
        if (image::IsRle(candidate.format))
        {
            candidate.bytes   = image::StoredSize({picture.palette, picture.indices}, image::UnitOf(candidate.format));
            candidate.colours = picture.palette.size();
        }
    }
    std::vector<image::Candidate> order;  // the best first; two at least, as an indexed picture fits both RLE formats
    for (const image::Candidate& candidate : choice.candidates)
    {
        if (image::IsRle(candidate.format) || (candidate.lossless && filePalette == FilePalette::Keep))
        {
            order.push_back(candidate);
        }
    }
    const auto rank = [](const image::Candidate& candidate)  // of equal ones rgb32 goes first, as it does in the core
    { return std::pair(candidate.bytes, candidate.format != image::Format::Rgb32); };
    std::stable_sort(order.begin(), order.end(),
                     [&](const auto& first, const auto& second) { return rank(first) < rank(second); });

    const image::Candidate& best    = order[0];
    const std::string       palette = "the file's palette of " + Counted(picture.palette.size(), "colour");
    choice.format                   = best.format;
    choice.reason                   = std::string(image::FormatName(best.format)) + ": " +
                    (image::IsRle(best.format) ? palette : "with " + palette + " rle8 and rle16 are larger") + ", " +
                    Counted(best.bytes, "byte") + "; next is " + SizeOf(order[1]);
    if (ownPalette.bytes < best.bytes)
    {
        choice.reason += "; --no-keep-palette: " + SizeOf(ownPalette);
    }
    return choice;
}

}  // namespace kanvo_image
