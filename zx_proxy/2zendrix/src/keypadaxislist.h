// A list of keypad axes that is read from the machine only when it may have changed.
#pragma once

#include <atomic>
#include <set>
#include <string>

struct KeypadAxisList {
    std::atomic<bool> dirty{true};  // raised on the client's thread
    std::set<std::string> names;    // this and the iterator: host's thread only
    std::set<std::string>::iterator next = names.end();
};
