#include "settle.h"

#include <chrono>

#include "verb_host.h"

namespace zxhost {

void settle(VerbHost& host, const std::function<bool()>& is_there) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (!is_there() && std::chrono::steady_clock::now() < end) {
        host.wait();
        host.poll();
    }
}

}  // namespace zxhost
