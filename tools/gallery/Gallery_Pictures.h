// Gallery_Pictures: loads PNG files into the bitmaps that the scenes draw, and keeps them alive.
#ifndef GALLERY_PICTURES_H
#define GALLERY_PICTURES_H

#include <memory>
#include <string>
#include <vector>

#include "Scene.h"

namespace gallery
{

class Pictures
{
public:
    //! screen must outlive the pictures.
    explicit Pictures(Kanvo_Screen& screen) : m_screen(screen) {}

    //! Loads every picture of the scenes from a folder. Returns an empty text, or the line "file: reason".
    std::string LoadAll(const std::string& folder);

    //! Loads one more picture for the scene that draws the viewer's own.
    std::string LoadOwn(const std::string& path);

    //! Of LoadOwn, in order.
    std::size_t OwnCount() const { return m_own.size(); }

    //! What a scene draws; number: which of the own pictures, if there is any.
    scenes::Input InputWithOwn(std::size_t number) const;

private:
    std::string Load(const std::string& path, scenes::Picture& picture);

    Kanvo_Screen&                              m_screen;
    scenes::Input                              m_input = {};
    std::vector<scenes::Picture>               m_own;
    std::vector<std::unique_ptr<Kanvo_Bitmap>> m_bitmaps;
};

}  // namespace gallery

#endif
