// Picture_Files: see the header.
#include "Picture_Files.h"

#include <algorithm>
#include <utility>

#include "Image_Rle.h"
#include "Png_Image.h"
#include "Program_Say.h"
#include "Program_Text.h"

namespace kanvo_image
{
namespace
{

static_assert(LongestSide == png::MaxSide);

AnyPicture FromRle(const std::string& path, const Bytes& bytes)
{
    const image::StoredImage stored = image::ReadImage(bytes, LongestSide);
    if (!stored)
    {
        throw Failure(FaultText(path, stored.fault.message, stored.fault.offset));
    }
    if (stored.endsEarly)
    {
        SayWarning(Shown(path) + ": the image ends after " + Grouped(stored.indices.size()) + " of " +
                   Grouped(std::uint64_t{stored.header.width} * stored.header.height) +
                   " pixels; the others count as transparent");
    }
    return {image::ToPicture(stored), stored.header.unit == image::Unit::Bits8 ? "rle8" : "rle16"};
}

AnyPicture FromRaw(const std::string& path, const Bytes& bytes)
{
    const image::RawImage raw = image::ReadRaw(bytes, LongestSide);
    if (!raw)
    {
        throw Failure(FaultText(path, raw.fault.message, raw.fault.offset));
    }
    return {image::DecodePixels(raw.pixels, raw.header.width, raw.header.height, raw.header.format),
            image::FormatName(raw.header.format)};
}

}  // namespace

std::string FaultText(const std::string& path, const std::string& message, std::size_t offset)
{
    return Shown(path) + ": " + message + ", at byte " + std::to_string(offset);
}

bool IsPng(const Bytes& bytes)
{
    constexpr std::uint8_t Signature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    return bytes.size() >= std::size(Signature) &&
           std::equal(std::begin(Signature), std::end(Signature), bytes.begin());
}

image::Picture DecodePng(const std::string& path, const Bytes& bytes)
{
    png::LoadResult loaded = png::Decode(bytes.data(), bytes.size(), Shown(path));
    if (!loaded)
    {
        throw Failure(loaded.error);
    }
    image::Picture picture;
    picture.width   = loaded.image.width;
    picture.height  = loaded.image.height;
    picture.argb    = std::move(loaded.image.argb);
    picture.palette = std::move(loaded.image.palette);
    picture.indices.assign(loaded.image.indices.begin(), loaded.image.indices.end());
    return picture;
}

image::Picture LoadPng(const std::string& path)
{
    return DecodePng(path, ReadFile(path));
}

AnyPicture LoadAny(const std::string& path)
{
    const Bytes bytes = ReadFile(path);
    if (bytes.empty())
    {
        throw Failure(Shown(path) + ": the file is empty");
    }
    if (IsPng(bytes))
    {
        return {DecodePng(path, bytes), "png"};
    }
    switch (image::KindOf(bytes.data(), bytes.size()))
    {
    case image::FileKind::Rle: return FromRle(path, bytes);
    case image::FileKind::Raw: return FromRaw(path, bytes);
    default: throw Failure(Shown(path) + ": neither a PNG file nor a stored image");
    }
}

void SavePng(const std::string& path, const image::Picture& picture)
{
    if (IsStream(path))
    {
        WriteFile(path, EncodePng(picture));
        return;
    }
    const std::string error = png::Save(path, picture.argb.data(), picture.width, picture.height,
                                        picture.width * sizeof(std::uint32_t), !image::IsOpaque(picture.argb));
    if (!error.empty())
    {
        throw Failure(error);
    }
}

Bytes EncodePng(const image::Picture& picture)
{
    const TemporaryFolder folder;
    SavePng(folder.File("picture.png"), picture);
    return ReadFile(folder.File("picture.png"));
}

}  // namespace kanvo_image
