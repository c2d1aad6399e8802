// The true form of a simulated ring, as the machine's description file tells it.
#pragma once

#include <string>
#include <vector>

#include "ring_fit.h"

namespace zxhost {

struct KnownRing {
    struct Wave {
        double waves = 0.0;
        double amplitude = 0.0;  // mm
        double phase = 0.0;      // degrees
    };

    PlanePoint centre;
    double height = 0.0;  // z of the ring's middle
    double radius = 0.0;
    double noise = 0.0;  // standard deviation of probing, mm
    std::vector<Wave> waves;
    std::string spindle;  // axis that turns the part, if any

    // Outwards, in mm, under this angle in radians, without noise.
    double deviation(double angle) const;

    // Of the form, between its highest and lowest place.
    double peak_to_valley() const;

    // Root of the mean square of the form, without noise.
    double rms() const;
};

// Reads section [workpiece] of the file. Throws HostError (wrong usage) naming the file and the key.
KnownRing read_known_ring(const std::string& file);

}  // namespace zxhost
