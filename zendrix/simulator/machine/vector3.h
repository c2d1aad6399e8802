// A point or direction in space, in mm.
#pragma once

#include <cmath>

namespace zendrix::sim {

inline constexpr double pi = 3.14159265358979323846;

constexpr double radians(double degrees) { return degrees * (pi / 180.0); }
constexpr double degrees(double radians) { return radians * (180.0 / pi); }

struct Vector3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    friend constexpr Vector3 operator+(const Vector3& a, const Vector3& b) {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend constexpr Vector3 operator-(const Vector3& a, const Vector3& b) {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend constexpr Vector3 operator*(const Vector3& a, double factor) {
        return {a.x * factor, a.y * factor, a.z * factor};
    }
};

constexpr double dot(const Vector3& a, const Vector3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline double length(const Vector3& a) { return std::sqrt(dot(a, a)); }

// About the z axis, seen from above counter-clockwise.
inline Vector3 rotated(const Vector3& a, double angle_degrees) {
    const double c = std::cos(radians(angle_degrees));
    const double s = std::sin(radians(angle_degrees));
    return {a.x * c - a.y * s, a.x * s + a.y * c, a.z};
}

}  // namespace zendrix::sim
