// The virtual workpiece: where its surface lies, seen from a point near it.
#pragma once

#include <complex>
#include <limits>
#include <string>
#include <vector>

#include "machine/vector3.h"

namespace zendrix::sim {

// A wave of the form deviation: amplitude * cos(waves * (angle - phase)), in mm and degrees.
struct Harmonic {
    int waves = 0;
    double amplitude = 0.0;
    double phase = 0.0;
};

struct WorkpieceDescription {
    enum class Kind { none, ring, cylinder, cone, sphere, plane };

    Kind kind = Kind::none;
    Vector3 center;  // a point of the plane; of a cone where `radius` holds
    double radius = 0.0;
    double taper = 0.0;  // cone: the half angle in degrees; positive widens towards +z
    double height = std::numeric_limits<double>::infinity();  // the surface's reach in z about the centre
    Vector3 normal{0.0, 0.0, 1.0};                            // plane
    double wavelength = 360.0;  // plane: mm along its surface that count as a full turn of the harmonics
    std::vector<Harmonic> harmonics;
    double noise = 0.0;   // standard deviation in mm
    std::string spindle;  // the axis that turns the part about x = y = 0; empty: none
};

class Workpiece {
public:
    // How the surface lies to a point.
    struct View {
        Vector3 normal;         // out of the nominal surface, of length 1
        double height = 0.0;    // of the point above the real surface (without noise), negative inside
        bool is_beside = true;  // no surface under this point
    };

    explicit Workpiece(const WorkpieceDescription& description);

    // `turn`: how far the spindle has turned the part, in degrees.
    View look(const Vector3& point, double turn) const;

private:
    struct Nominal {
        Vector3 normal;
        double height;
        std::complex<double> direction;  // of the harmonics: cosine and sine of the angle
        bool is_beside;
    };
    Nominal nominal(const Vector3& point) const;
    Nominal round(const Vector3& from_center) const;
    Nominal sphere(const Vector3& from_center) const;
    Nominal plane(const Vector3& from_center) const;
    double deviation(std::complex<double> direction) const;

    struct Wave {
        int waves;
        std::complex<double> amplitude;  // turned back by the phase
    };

    WorkpieceDescription m_description;
    std::vector<Wave> m_waves;
    double m_sin_taper = 0.0;
    double m_cos_taper = 1.0;
    Vector3 m_along;  // plane: the direction in which the harmonics run
};

}  // namespace zendrix::sim
