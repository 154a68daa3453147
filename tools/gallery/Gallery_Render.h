// Gallery_Render: draws a scene with the optimised blits off and on, and compares.
#ifndef GALLERY_RENDER_H
#define GALLERY_RENDER_H

#include <cstddef>
#include <memory>
#include <string>

#include "Scene.h"

namespace gallery
{

//! A scene as one setting of the render state drew it.
struct Rendering
{
    std::unique_ptr<Kanvo_BitmapARGB32> bitmap;
    Tov_UInt                            checksum     = 0;
    double                              milliseconds = 0;  //!< the fastest of several runs
};

struct Result
{
    const scenes::Scene* scene = nullptr;
    std::string          name;  //!< of the files: that of the scene, numbered where it is drawn more than once
    Rendering            portable;
    Rendering            optimised;
    std::size_t          differing = 0;  //!< pixels that are not the same in both

    bool AsDocumented() const { return scene->pathsDiffer || differing == 0; }
    //! "same bytes", or how many pixels differ and whether they may.
    std::string Verdict() const;
};

//! Draws into result. Returns an empty text, or the line "scene: reason" when the library reported misuse on the way.
std::string Render(const scenes::Scene& scene, const std::string& name, const scenes::Input& input,
                   Kanvo_Screen& screen, Result& result);

//! "400 x 240"
std::string SizeText(const Kanvo_Bitmap& bitmap);

//! "8C1F2A30"
std::string ChecksumText(Tov_UInt checksum);

//! "0.42"
std::string MillisecondsText(double milliseconds);

}  // namespace gallery

#endif
