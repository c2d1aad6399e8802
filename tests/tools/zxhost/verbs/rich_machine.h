// The machine that has everything, and zxhost speaking to it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "temporary_directory.h"
#include "test_process.h"

namespace zxhost_test {

using Json = nlohmann::json;
using Words = std::vector<std::string>;
using test_support::Process;
using test_support::ProcessResult;

// A simulated machine of this description file, on a port of its own, as fast as the processor, with its
// reference marks found.
class RichMachine {
public:
    explicit RichMachine(const Words& more = {}, const std::string& description = "rich.ini") {
        Words words{"--port", "0", "--speed", "max", "--machine", initialized(description)};
        words.insert(words.end(), more.begin(), more.end());
        m_process = std::make_unique<Process>(ZX_SIMULATOR_PROGRAM, words);
        if (!m_process->wait_for("\n")) throw std::runtime_error("no simulated machine: " + m_process->err());
        const std::string& line = m_process->out();
        m_port = line.substr(line.rfind(':') + 1, line.find('\n') - line.rfind(':') - 1);
    }

    const std::string& port() const { return m_port; }
    Process& process() { return *m_process; }

private:
    std::string initialized(const std::string& description) const {
        std::ifstream in(std::string(ZX_MACHINES) + "/" + description);
        std::ostringstream text;
        text << in.rdbuf();
        std::string machine = text.str();
        const std::string from = "initialized=0";
        const std::size_t at = machine.find(from);
        if (at != std::string::npos) machine.replace(at, from.size(), "initialized=1");
        return m_directory.file("machine.ini", machine);
    }

    TemporaryDirectory m_directory;
    std::unique_ptr<Process> m_process;
    std::string m_port;
};

class VerbTest : public ::testing::Test {
protected:
    std::unique_ptr<Process> start(const RichMachine& on, const Words& words) const {
        Words all{"--host", "127.0.0.1", "--port", on.port()};
        all.insert(all.end(), words.begin(), words.end());
        return std::make_unique<Process>(
            ZX_HOST_PROGRAM, all,
            Process::Environment{{"ZENDRIX_ERRORLOG", directory.path("error.log")},
                                 {"ZENDRIX_TRACE", directory.path("trace.log")}});
    }
    ProcessResult run_on(const RichMachine& on, const Words& words) const { return start(on, words)->wait(); }
    ProcessResult run(const Words& words) const { return run_on(machine, words); }

    // What the verb says, which must succeed.
    std::string said(const Words& words) const {
        const ProcessResult result = run(words);
        EXPECT_EQ(result.exit_status, 0) << result.err;
        return result.out;
    }

    Json json(Words words) const {
        words.insert(words.begin(), {"--format", "json"});
        return Json::parse(said(words), nullptr, false);
    }

    // The status, and that standard error says all of these and standard output nothing.
    void expect_refusal(const RichMachine& on, const Words& words, int status, const Words& says) const {
        const ProcessResult result = run_on(on, words);
        EXPECT_EQ(result.exit_status, status) << result.err;
        EXPECT_EQ(result.out, "");
        for (const std::string& text : says)
            EXPECT_NE(result.err.find(text), std::string::npos) << text << " in: " << result.err;
    }
    void expect_refusal(const Words& words, int status, const Words& says) const {
        expect_refusal(machine, words, status, says);
    }

    TemporaryDirectory directory;
    RichMachine machine;
};

}  // namespace zxhost_test
