// zxhost and the machine that has everything, with files for its verbs.
#pragma once

#include <algorithm>
#include <cstdint>

#include "rich_machine.h"

namespace zxhost_test {

class BlockVerbTest : public VerbTest {
protected:
    // Temporary files of this test alone: the driver's have a fixed name.
    std::unique_ptr<Process> start_at(const std::string& port, const Words& words,
                                      const std::string& input_file = "") const {
        Words all{"--host", "127.0.0.1", "--port", port};
        all.insert(all.end(), words.begin(), words.end());
        return start_host(all, input_file);
    }
    std::unique_ptr<Process> start_host(const Words& words, const std::string& input_file = "") const {
        return std::make_unique<Process>(ZX_HOST_PROGRAM, words,
                                         Process::Environment{{"ZENDRIX_ERRORLOG", path("error.log")},
                                                              {"ZENDRIX_TRACE", path("trace.log")},
                                                              {"TMPDIR", temporary.path()},
                                                              {"TMP", temporary.path()}},
                                         input_file);
    }

    std::string path(const std::string& name) const { return directory.path(name); }
    std::string file(const std::string& name, const std::string& content) const {
        return directory.file(name, content);
    }

    // What is in the directory, the logs left out: nothing half-written may be.
    Words files() const {
        Words names;
        for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
            const std::string name = entry.path().filename().string();
            if (name != "error.log" && name != "trace.log") names.push_back(name);
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    // Bytes that don't pack, the same each time.
    static std::string noise(std::size_t size) {
        std::string bytes(size, '\0');
        std::uint32_t state = 12345;
        for (char& byte : bytes) {
            state = state * 1664525U + 1013904223U;
            byte = static_cast<char>(state >> 24U);
        }
        return bytes;
    }

    TemporaryDirectory temporary;
};

}  // namespace zxhost_test
