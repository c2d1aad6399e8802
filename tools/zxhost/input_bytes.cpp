#include "input_bytes.h"

#include <cstddef>
#include <cstdint>
#include <functional>

#include "exit_status.h"
#include "os/error.h"
#include "os/file.h"
#include "os/terminal.h"

namespace zxhost {
namespace {

constexpr std::size_t most_bytes = std::size_t{1} << 30;
constexpr std::uint32_t piece = 1 << 20;

[[noreturn]] void fail(const std::string& what, const std::string& why) {
    throw HostError(ExitStatus::WrongUsage, what + " can't be read: " + why,
                    "name a file that you may read, or - for standard input");
}

// Fills a place of this many bytes; the count, 0 at the end, negative for a failure.
using Read = std::function<std::ptrdiff_t(char* target, std::uint32_t size)>;

std::string read_all(const std::string& what, const Read& read) {
    std::string bytes;
    for (std::size_t end = 0;;) {
        bytes.resize(end + piece);
        const std::ptrdiff_t count = read(bytes.data() + end, piece);
        if (count < 0) fail(what, os::error_text(os::last_error()));
        end += static_cast<std::size_t>(count);
        bytes.resize(end);
        if (count == 0) return bytes;
        if (end > most_bytes) fail(what, "it holds more than 1 GiB");
    }
}

class InputFile {
public:
    explicit InputFile(const std::string& file)
        : m_handle(os::files().open(file.c_str(), os::OpenMode::Read, false)) {
        if (m_handle == os::no_file) fail("the file " + file, os::error_text(os::last_error()));
    }
    ~InputFile() { os::files().close(m_handle); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    std::ptrdiff_t read(char* target, std::uint32_t size) {
        std::uint32_t done = 0;
        return os::files().read(m_handle, target, size, done) ? static_cast<std::ptrdiff_t>(done) : -1;
    }

private:
    os::FileHandle m_handle;
};

}  // namespace

std::string read_bytes(const std::string& file) {
    if (file == standard_stream) return read_all("standard input", os::read_input);
    InputFile input(file);
    return read_all("the file " + file,
                    [&](char* target, std::uint32_t size) { return input.read(target, size); });
}

}  // namespace zxhost
