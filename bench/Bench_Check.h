// Bench_Check: whether a contender draws what the case asks for, found out before any time is taken. Compared with an
// expectation computed here in floating point: every pixel where operations leave no choice, areas and mean colours
// where contenders may choose samples and edges.
#ifndef BENCH_CHECK_H
#define BENCH_CHECK_H

#include <string>

#include "Bench_Contender.h"

namespace bench
{

enum class Verdict
{
    Right,    //!< up to a few levels of rounding, a few percent of an outline
    Inexact,  //!< recognisable, but less exact than others: takes part, marked
    Wrong     //!< something else: takes no part
};

struct Finding
{
    Verdict     verdict = Verdict::Right;
    std::string reason;  //!< empty for Right
};

//! Draws the first operation of the case, looks at the target, and leaves the target as it was before.
Finding Check(const Input& input, const Job& job);

}  // namespace bench

#endif
