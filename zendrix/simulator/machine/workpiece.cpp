#include "machine/workpiece.h"

#include <cmath>

namespace zendrix::sim {

namespace {

// A direction across `normal`: towards x, or towards y where the normal itself points along x.
Vector3 across(const Vector3& normal) {
    const Vector3 start = std::abs(normal.x) > 0.9 ? Vector3{0.0, 1.0, 0.0} : Vector3{1.0, 0.0, 0.0};
    const Vector3 flat = start - normal * dot(start, normal);
    return flat * (1.0 / length(flat));
}

}  // namespace

Workpiece::Workpiece(const WorkpieceDescription& description) : m_description(description) {
    const double taper = description.kind == WorkpieceDescription::Kind::cone ? description.taper : 0.0;
    m_sin_taper = std::sin(radians(taper));
    m_cos_taper = std::cos(radians(taper));
    m_description.normal = description.normal * (1.0 / length(description.normal));
    m_along = across(m_description.normal);
    for (const Harmonic& wave : description.harmonics) {
        m_waves.push_back({wave.waves, std::polar(wave.amplitude, radians(-wave.waves * wave.phase))});
    }
}

Workpiece::View Workpiece::look(const Vector3& point, double turn) const {
    const Nominal part = nominal(turn == 0.0 ? point : rotated(point, -turn));
    if (part.is_beside) return {};
    const Vector3 normal = turn == 0.0 ? part.normal : rotated(part.normal, turn);
    return {normal, part.height - deviation(part.direction), false};
}

Workpiece::Nominal Workpiece::nominal(const Vector3& point) const {
    const Vector3 from_center = point - m_description.center;
    switch (m_description.kind) {
        case WorkpieceDescription::Kind::ring:
        case WorkpieceDescription::Kind::cylinder:
        case WorkpieceDescription::Kind::cone:
            return round(from_center);
        case WorkpieceDescription::Kind::sphere:
            return sphere(from_center);
        case WorkpieceDescription::Kind::plane:
            return plane(from_center);
        case WorkpieceDescription::Kind::none:
            break;
    }
    return {{}, 0.0, {}, true};
}

Workpiece::Nominal Workpiece::round(const Vector3& p) const {
    const double across_axis = std::sqrt(p.x * p.x + p.y * p.y);
    if (across_axis == 0.0 || std::abs(p.z) > m_description.height) return {{}, 0.0, {}, true};
    const Vector3 radial{p.x / across_axis, p.y / across_axis, 0.0};
    const double at_height = m_description.radius * m_cos_taper + p.z * m_sin_taper;
    return {radial * m_cos_taper - Vector3{0.0, 0.0, m_sin_taper},
            across_axis * m_cos_taper - at_height,
            {radial.x, radial.y},
            false};
}

Workpiece::Nominal Workpiece::sphere(const Vector3& p) const {
    const double distance = length(p);
    if (distance == 0.0) return {{}, 0.0, {}, true};
    const double flat = std::sqrt(p.x * p.x + p.y * p.y);
    const std::complex<double> direction =
        flat == 0.0 ? std::complex<double>(1.0) : std::complex<double>(p.x / flat, p.y / flat);
    return {p * (1.0 / distance), distance - m_description.radius, direction, false};
}

Workpiece::Nominal Workpiece::plane(const Vector3& p) const {
    const double turns = dot(p, m_along) / m_description.wavelength;
    return {m_description.normal, dot(p, m_description.normal), std::polar(1.0, 2.0 * pi * turns), false};
}

// A power for each wave, by squaring: no cosine a point. The parts are multiplied by hand, since the operator
// looks for infinities.
double Workpiece::deviation(std::complex<double> direction) const {
    const auto times = [](std::complex<double> a, std::complex<double> b) {
        return std::complex<double>(a.real() * b.real() - a.imag() * b.imag(),
                                    a.real() * b.imag() + a.imag() * b.real());
    };
    double sum = 0.0;
    for (const Wave& wave : m_waves) {
        std::complex<double> turned = wave.amplitude;
        std::complex<double> square = direction;
        for (int power = wave.waves; power > 0; power /= 2) {
            if (power % 2 != 0) turned = times(turned, square);
            square = times(square, square);
        }
        sum += turned.real();
    }
    return sum;
}

}  // namespace zendrix::sim
