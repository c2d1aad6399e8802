// One line that tells how far an action has come.
#pragma once

#include <chrono>
#include <functional>
#include <ostream>
#include <string>

namespace zxhost {

enum class ProgressStyle {
    Off,
    Lines,    // a line for each step, for files and pipes
    InPlace,  // the same line written over, for terminals
};

class Progress {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    // Borrows the stream.
    Progress(std::ostream& out, ProgressStyle style, Clock now = std::chrono::steady_clock::now);

    // True a few times a second, and never with style Off: time to make a text and show it.
    bool is_due();

    void show(const std::string& text);

    // Frees the line for other output; what was last shown stays readable.
    void end();

private:
    std::ostream& m_out;
    ProgressStyle m_style;
    Clock m_now;
    std::chrono::steady_clock::time_point m_last;
    bool m_on_line = false;
};

}  // namespace zxhost
