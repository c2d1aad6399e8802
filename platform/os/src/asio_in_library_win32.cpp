// Asio starts Winsock before main, which in a library is while that is being loaded, when the system forbids
// it. This object comes before all of Asio's own and keeps it from that; os::Network starts Winsock instead.
#include <asio/detail/winsock_init.hpp>

#if defined(_MSC_VER)
#pragma warning(disable : 4073)  // the object is meant to be among the first
#pragma init_seg(lib)
#define AMONG_THE_FIRST
#else
#define AMONG_THE_FIRST __attribute__((init_priority(101)))
#endif

namespace {
AMONG_THE_FIRST const asio::detail::winsock_init<>::manual winsock_by_hand;
}
