// The parser of one line of a shell or script: all verbs, on the machine that is open there.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "verbs.h"

namespace zxhost {

// Good for one line.
class LineApp {
public:
    // The line's own options change a copy of the settings.
    explicit LineApp(const Settings& settings);
    ~LineApp();
    LineApp(const LineApp&) = delete;
    LineApp& operator=(const LineApp&) = delete;

    CLI::App& app() { return *m_app; }
    Program& program() { return m_program; }

    // Throws HostError.
    void run(std::vector<std::string> words, const Streams& streams);

private:
    Program m_program;
    std::unique_ptr<CLI::App> m_app;
};

}  // namespace zxhost
