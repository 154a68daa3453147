// Peers: other libraries as contenders. Each has a file of its own here, compiled where its package is installed.
#ifndef PEERS_H
#define PEERS_H

#include "Bench_Contender.h"

namespace bench
{

std::unique_ptr<Contender> MakePixman();
std::unique_ptr<Contender> MakeCairo();
std::unique_ptr<Contender> MakeCairoFast();
std::unique_ptr<Contender> MakeSdl2();
std::unique_ptr<Contender> MakeLibyuv();
std::unique_ptr<Contender> MakeOpenCv();
std::unique_ptr<Contender> MakeAgg();
std::unique_ptr<Contender> MakeQt();

}  // namespace bench

#endif
