// Records of probes and probe systems, as they cross from the machine server through the client to the host.
#pragma once

#include <cstdint>
#include <string>

// One tip of one probe; the four numbers are those of its definition.
struct CProbe {
    std::int32_t probe = 0;
    std::int32_t tip = 0;
    double x1 = 0.0;
    double x2 = 0.0;
    double x3 = 0.0;
    double x4 = 0.0;
};

// One defined id of a probe system; the six numbers are those of its definition.
struct CProbesystemEntry {
    std::string name;
    std::int32_t id = 0;
    double x1 = 0.0;
    double x2 = 0.0;
    double x3 = 0.0;
    double x4 = 0.0;
    double x5 = 0.0;
    double x6 = 0.0;
};

// What a host gives to define a probe system; the server knows what the numbers mean.
struct MMachProbesystemDefinition {
    std::string name;
    std::int32_t id = 0;
    double values[6] = {};
};

// The active probe system's type, as the host sees it.
struct MMachProbesystemType {
    std::int32_t type = 0;  // 0 not known, 1 none, 2 and 3 the two kinds with parameters
    std::int32_t a = 0;     // valid for types 2 and 3
    std::int32_t b = 0;     // valid for type 3
    double c = 0.0;         // valid for types 2 and 3
    double d = 0.0;         // valid for type 3
};
