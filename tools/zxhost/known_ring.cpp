#include "known_ring.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>

#include "MIniData.h"
#include "exit_status.h"
#include "number_text.h"

namespace zxhost {
namespace {

const char* const section = "workpiece";
constexpr int places = 36000;  // round the ring, where its form is looked at

class Reader {
public:
    explicit Reader(const std::string& file) : m_file(file), m_ini(file.c_str()) {
        if (!m_ini.IsOpen() || m_ini.IsNew())
            throw HostError(ExitStatus::WrongUsage, "the file " + file + " can't be read",
                            "name the machine's description, as in --truth machines/round4.ini");
    }

    std::string text(const char* key, const std::string& otherwise = "") {
        std::string value = otherwise;
        m_ini.GetStringEntry(section, key, value);
        const std::size_t first = value.find_first_not_of(" \t");
        return first == std::string::npos ? ""
                                          : value.substr(first, value.find_last_not_of(" \t") + 1 - first);
    }

    double number(const char* key) {
        const auto value = number_from(text(key));
        if (!value || !std::isfinite(*value)) fail(key, "is missing or no number");
        return *value;
    }

    [[noreturn]] void fail(const std::string& key, const std::string& why) {
        throw HostError(ExitStatus::WrongUsage, m_file + ": [" + section + "] " + key + " " + why,
                        "the workpiece must be a ring as in machines/round4.ini");
    }

private:
    std::string m_file;
    MIniData m_ini;
};

// "WAVES:AMPLITUDE:PHASE"
KnownRing::Wave parse_wave(Reader& reader, const std::string& text) {
    std::vector<double> numbers;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ':');) {
        const auto number = number_from(part);
        if (!number || !std::isfinite(*number)) reader.fail("harmonics", "holds '" + printable(text) + "'");
        numbers.push_back(*number);
    }
    if (numbers.size() != 3) reader.fail("harmonics", "holds '" + printable(text) + "'");
    // Fewer waves would be another radius or another centre.
    if (numbers[0] < 2.0) reader.fail("harmonics", "holds fewer than two waves: '" + printable(text) + "'");
    return {numbers[0], numbers[1], numbers[2]};
}

}  // namespace

double KnownRing::deviation(double angle) const {
    double sum = 0.0;
    for (const Wave& wave : waves)
        sum += wave.amplitude * std::cos(wave.waves * (angle - wave.phase * std::numbers::pi / 180.0));
    return sum;
}

double KnownRing::rms() const {
    double squares = 0.0;
    for (int i = 0; i < places; ++i) {
        const double here = deviation(i * 2.0 * std::numbers::pi / places);
        squares += here * here;
    }
    return std::sqrt(squares / places);
}

double KnownRing::peak_to_valley() const {
    double low = deviation(0.0);
    double high = low;
    for (int i = 1; i < places; ++i) {
        const double here = deviation(i * 2.0 * std::numbers::pi / places);
        low = std::min(low, here);
        high = std::max(high, here);
    }
    return high - low;
}

KnownRing read_known_ring(const std::string& file) {
    Reader reader(file);
    if (reader.text("kind") != "ring") reader.fail("kind", "is not ring");
    KnownRing ring;
    ring.centre = {reader.number("center_x"), reader.number("center_y")};
    ring.height = reader.number("center_z");
    ring.radius = reader.number("radius");
    ring.noise = reader.number("noise");
    ring.spindle = reader.text("spindle");
    if (ring.radius <= 0.0) reader.fail("radius", "is not above zero");
    std::istringstream harmonics(reader.text("harmonics"));
    for (std::string wave; harmonics >> wave;) ring.waves.push_back(parse_wave(reader, wave));
    return ring;
}

}  // namespace zxhost
