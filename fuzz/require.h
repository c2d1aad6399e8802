// What must hold for any input: the fuzzer takes an abort for a find.
#pragma once

#include <cstdio>
#include <cstdlib>

#define REQUIRE(condition)                                                                     \
    do {                                                                                       \
        if (!(condition)) {                                                                    \
            std::fprintf(stderr, "%s:%d: doesn't hold: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                      \
        }                                                                                      \
    } while (false)
