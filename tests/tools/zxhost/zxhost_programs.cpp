#include "zxhost_programs.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace zxhost_test {
namespace {

std::string text_of(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string round_machine(const Edits& edits) {
    std::string text = text_of(ZX_ROUND_MACHINE);
    for (const auto& [from, to] : edits) {
        const std::size_t at = text.find(from);
        if (at == std::string::npos) throw std::runtime_error("the machine's file has no " + from);
        text.replace(at, from.size(), to);
    }
    return text;
}

}  // namespace

Simulator::Simulator(const Words& more, const Edits& edits) {
    std::ofstream(machine_file(), std::ios::binary) << round_machine(edits);
    Words words{"--port", "0", "--machine", machine_file()};
    words.insert(words.end(), more.begin(), more.end());
    m_process = std::make_unique<Process>(ZX_SIMULATOR_PROGRAM, words);
    if (!m_process->wait_for("\n")) throw std::runtime_error("no simulated machine: " + m_process->err());
    const std::string& line = m_process->out();
    m_port = line.substr(line.rfind(':') + 1, line.find('\n') - line.rfind(':') - 1);
}

std::unique_ptr<Process> Host::start(const Words& words, const std::string& input_file) const {
    return std::make_unique<Process>(
        ZX_HOST_PROGRAM, words,
        Process::Environment{{"ZENDRIX_ERRORLOG", (directory / "error.log").string()},
                             {"ZENDRIX_TRACE", (directory / "trace.log").string()},
                             {"TMPDIR", directory.path()},
                             {"TMP", directory.path()}},
        input_file);
}

std::unique_ptr<Process> Host::start(const Simulator& simulator, const Words& words) const {
    Words all = connection(simulator);
    all.insert(all.end(), words.begin(), words.end());
    return start(all);
}

}  // namespace zxhost_test
