// Peers: the list of those that were found when this program was configured.
#include "Peers.h"

namespace bench
{

Contenders PeerContenders()
{
    Contenders contenders;
#ifdef KANVO_PEER_PIXMAN
    contenders.push_back(MakePixman());
#endif
#ifdef KANVO_PEER_CAIRO
    contenders.push_back(MakeCairo());
    contenders.push_back(MakeCairoFast());
#endif
#ifdef KANVO_PEER_SDL2
    contenders.push_back(MakeSdl2());
#endif
#ifdef KANVO_PEER_LIBYUV
    contenders.push_back(MakeLibyuv());
#endif
#ifdef KANVO_PEER_OPENCV
    contenders.push_back(MakeOpenCv());
#endif
#ifdef KANVO_PEER_AGG
    contenders.push_back(MakeAgg());
#endif
#ifdef KANVO_PEER_QT
    contenders.push_back(MakeQt());
#endif
    return contenders;
}

}  // namespace bench
