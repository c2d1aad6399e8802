// The real programs for black-box tests: a simulated machine, and zxhost speaking to it.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "temporary_directory.h"
#include "test_process.h"

namespace zxhost_test {

using test_support::Process;
using test_support::ProcessResult;
using Words = std::vector<std::string>;

class Directory : public TemporaryDirectory {
public:
    std::filesystem::path operator/(const std::string& name) const { return path(name); }
};

// Changes of the machine's description: what stands there, and what shall.
using Edits = std::vector<std::pair<std::string, std::string>>;
const Edits initialized{{"initialized=0", "initialized=1"}};

// One simulated machine for round parts on a port of its own.
class Simulator {
public:
    explicit Simulator(const Words& more = {"--speed", "max"}, const Edits& edits = initialized);

    const std::string& port() const { return m_port; }
    std::string machine_file() const { return (m_directory / "machine.ini").string(); }
    Process& process() { return *m_process; }

private:
    Directory m_directory;
    std::unique_ptr<Process> m_process;
    std::string m_port;
};

// zxhost with these words, and logs of its own.
class Host {
public:
    Words connection(const Simulator& simulator) const {
        return {"--host", "127.0.0.1", "--port", simulator.port()};
    }

    // With this file as standard input, or nothing.
    std::unique_ptr<Process> start(const Words& words, const std::string& input_file = "") const;
    std::unique_ptr<Process> start(const Simulator& simulator, const Words& words) const;
    ProcessResult run(const Words& words) const { return start(words)->wait(); }
    ProcessResult run(const Simulator& simulator, const Words& words) const {
        return start(simulator, words)->wait();
    }

    Directory directory;
};

}  // namespace zxhost_test
