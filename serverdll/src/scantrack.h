// The running number of a scan's points: none may be missing, none may come twice.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace serverdll {

class ScanTrack {
public:
    explicit ScanTrack(long id);

    long id() const noexcept { return m_id; }
    // True if the line is a point of this scan; `body` is what stands behind the keyword.
    bool is_mine(std::string_view line, std::string_view& body) const noexcept;

    // The quick road, for the line at the begin of `bytes`: if it is whole and the next point in turn,
    // appends its values, tells their number and gives the line's length with its end; else 0, and nothing
    // has happened.
    std::size_t take_line(std::string_view bytes, std::vector<double>& values, std::size_t& count);

    // Appends the point's values and gives their number. On 0 the point isn't taken: `error` is then what the
    // host must hear, or empty if the scan has failed before.
    std::size_t take(std::string_view body, std::vector<double>& values, std::string_view& error);

private:
    void step();

    long m_id;
    std::string m_prefix;
    std::string m_expected;  // the begin of the next point's line, with its number and a blank
    std::int64_t m_next = 1;
    bool m_failed = false;
};

inline constexpr std::string_view points_lost = "scan: points lost";

}  // namespace serverdll
