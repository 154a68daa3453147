// Scene_BuiltIn: the pictures of the scenes as a part of the program, for machines that read no PNG files, and the line of
// scenes/CHECKSUMS that a scene draws with them. The arrays are made of the PNG files by the machine that builds.
#ifndef SCENE_BUILTIN_H
#define SCENE_BUILTIN_H

#include <memory>
#include <string>
#include <vector>

#include "Scene.h"

namespace scenes
{

class BuiltIn
{
public:
    //! screen must outlive the pictures.
    explicit BuiltIn(Kanvo_Screen& screen);

    //! What is missing, empty where every picture is there; nothing may be drawn otherwise.
    const std::string& Error() const { return m_error; }

    //! The same as a question, with what is missing on stderr.
    bool AreThere() const;

    const Input& Get() const { return m_input; }

private:
    Picture Made(const PictureFile& file, Kanvo_Screen& screen);

    std::vector<std::unique_ptr<Kanvo_Bitmap>> m_bitmaps;
    Input                                      m_input = {};
    std::string                                m_error;
};

//! The checksum of a scene drawn into target with a setting of the screen's render state.
Tov_UInt Drawn(const Scene& scene, Kanvo_BitmapARGB32& target, const Input& input, Kanvo_Screen& screen,
               Optimized_Blit setting);

//! Draws on the portable and then on the optimised path and returns the line of the list: "Name  400 x 240  8C1F2A30
//! 8C1F2A30"; for a target without memory "Name  400 x 240  does not fit into memory".
std::string ChecksumLine(const Scene& scene, Kanvo_BitmapARGB32& target, const Input& input, Kanvo_Screen& screen);

}  // namespace scenes

#endif
