// StretchSpies: stand in front of the loops of neonloops_stretch.h, record the calls and pass them on; put back what was
// there before at the end of their scope. The loops of fills have theirs in DrawSpies.h.
#ifndef STRETCHSPIES_H
#define STRETCHSPIES_H

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace support
{

//! One call of a loop, with everything that was passed, in the order in which it was passed. What a loop does not have
//! stays as it is here.
struct StretchCall
{
    const char*   loop       = "";
    const void*   dst        = nullptr;
    const void*   src        = nullptr;
    std::uint32_t dstPitch   = 0;
    std::uint32_t srcPitch   = 0;
    std::int32_t  dstX       = 0;
    std::int32_t  dstY       = 0;
    std::uint32_t dstWidth   = 0;
    std::uint32_t dstHeight  = 0;
    std::uint32_t srcWidth   = 0;
    std::uint32_t srcHeight  = 0;
    std::uint32_t srcX       = 0;
    std::uint32_t srcY       = 0;
    std::uint32_t clipWidth  = 0;
    std::uint32_t clipHeight = 0;
    std::uint32_t color      = 0;
    int           alpha      = -1;

    friend bool          operator==(const StretchCall& one, const StretchCall& other);
    friend bool          operator!=(const StretchCall& one, const StretchCall& other) { return !(one == other); }
    friend std::ostream& operator<<(std::ostream& stream, const StretchCall& call);
};

//! One at a time.
class StretchSpies
{
public:
    StretchSpies();
    ~StretchSpies();
    StretchSpies(const StretchSpies&)            = delete;
    StretchSpies& operator=(const StretchSpies&) = delete;

    const std::vector<StretchCall>& Calls() const;
    void                            Clear();
};

}  // namespace support

#endif
