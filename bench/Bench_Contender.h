// Bench_Contender: whoever draws. The library (Bench_Kanvo.cpp) and its peers (peers/) implement it; Bench_Check looks
// at what they drew before Bench_Rounds takes their time.
#ifndef BENCH_CONTENDER_H
#define BENCH_CONTENDER_H

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Bench_Case.h"

namespace bench
{

//! One case, ready to be drawn by one contender. Empty where it cannot.
struct Job
{
    std::function<void(int count)> run;  //!< draws the operation so often, its input from the start
    std::shared_ptr<Picture>       target;
    std::string                    note;            //!< how it goes about it, where that is not obvious
    bool                           isLess = false;  //!< does less than the case asks for, and is no measure of it

    explicit operator bool() const { return static_cast<bool>(run); }
};

class Contender
{
public:
    virtual ~Contender()             = default;
    virtual std::string Name() const = 0;
    //! Version, or what else there is to know about it.
    virtual std::string Version() const             = 0;
    virtual Job         Prepare(const Input& input) = 0;
};

using Contenders = std::vector<std::unique_ptr<Contender>>;

//! The library, once for every instruction set of this machine, with its optimised loops and without.
Contenders KanvoContenders();

//! What was found when this program was configured (peers/Peers.cpp). None without the option KANVO_BENCH_PEERS.
Contenders PeerContenders();

inline std::shared_ptr<Picture> MakeTarget(const Input& input)
{
    return std::make_shared<Picture>(input.kind.targetWidth, input.kind.targetHeight);
}

//! A run that calls draw(i) for every operation.
template <class Draw>
std::function<void(int)> Each(Draw draw)
{
    return [draw = std::move(draw)](int count) mutable
    {
        for (int i = 0; i < count; ++i) draw(i);
    };
}

//! A run that calls draw(x, y) for every rectangle's top-left corner.
template <class Draw>
std::function<void(int)> EachPlace(const Input& input, Draw draw)
{
    return [&input, draw = std::move(draw)](int count) mutable
    {
        for (int i = 0; i < count; ++i)
        {
            const Point& place = input.Place(i);
            draw(static_cast<int>(place.x), static_cast<int>(place.y));
        }
    };
}

}  // namespace bench

#endif
