// The driver's picture after an action.
#pragma once

#include <functional>

namespace zxhost {

class VerbHost;

// Waits until the event of an action that has ended has reached the driver's picture, a second at most: some
// actions end before their event comes, and some change nothing.
void settle(VerbHost& host, const std::function<bool()>& is_there);

}  // namespace zxhost
