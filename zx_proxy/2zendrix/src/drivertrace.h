// One line of the trace on the channel "default", made only if its level is on.
#pragma once

#include "mtrace.h"

#define DRIVER_TRACE(source, level, ...)                            \
    do {                                                            \
        if (::_MTrace_TestLevel("default", level)) {                \
            ::_MTrace_Location(source, __LINE__, "default", level); \
            ::_MTrace_Always(__VA_ARGS__);                          \
        }                                                           \
    } while (false)
