// Gallery_Pictures: see the header.
#include "Gallery_Pictures.h"

#include <utility>

#include "Png_Bitmap.h"

namespace gallery
{

std::string Pictures::LoadAll(const std::string& folder)
{
    for (const scenes::PictureFile& entry : scenes::PictureFiles())
    {
        const std::string path    = folder + "/" + entry.file;
        scenes::Picture&  picture = m_input.*entry.slot;
        std::string       error   = Load(path, picture);
        if (!error.empty())
        {
            return error;
        }
        if (picture.argb32->GetWidth() != entry.width || picture.argb32->GetHeight() != entry.height)
        {
            return path + ": the scenes need " + std::to_string(entry.width) + " x " + std::to_string(entry.height) +
                   " pixels";
        }
    }
    m_input.own = m_input.*scenes::PictureFiles().begin()->slot;
    return {};
}

std::string Pictures::LoadOwn(const std::string& path)
{
    scenes::Picture picture = {};
    std::string     error   = Load(path, picture);
    if (error.empty())
    {
        m_own.push_back(picture);
    }
    return error;
}

scenes::Input Pictures::InputWithOwn(std::size_t number) const
{
    scenes::Input input = m_input;
    if (number < m_own.size())
    {
        input.own = m_own[number];
    }
    return input;
}

std::string Pictures::Load(const std::string& path, scenes::Picture& picture)
{
    const png::LoadResult loaded = png::Load(path);
    if (!loaded)
    {
        return loaded.error;
    }
    const std::pair<BitmapType, Kanvo_Bitmap**> formats[] = {{BM_ARGB32, &picture.argb32},
                                                             {BM_RGB32, &picture.rgb32},
                                                             {BM_RGB565, &picture.rgb565},
                                                             {BM_ALPHA8, &picture.a8}};
    for (const auto& [format, slot] : formats)
    {
        std::unique_ptr<Kanvo_Bitmap> bitmap = png::MakeBitmap(loaded.image, format, m_screen);
        if (bitmap == nullptr)
        {
            return path + ": not enough memory";
        }
        *slot = bitmap.get();
        m_bitmaps.push_back(std::move(bitmap));
    }
    return {};
}

}  // namespace gallery
