#include <filesystem>
#include <fstream>
#include <iterator>

#include "process_resources.h"

namespace test_support {
namespace {

namespace fs = std::filesystem;

std::ptrdiff_t entries_of(const char* directory) {
    return std::distance(fs::directory_iterator(directory), fs::directory_iterator());
}

}  // namespace

std::ptrdiff_t thread_count() { return entries_of("/proc/self/task"); }

const std::ptrdiff_t handles_of_locks = 0;

std::ptrdiff_t handle_count() { return entries_of("/proc/self/fd"); }

std::ptrdiff_t socket_count() {
    std::ptrdiff_t count = 0;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (fs::read_symlink(entry, error).string().starts_with("socket:")) ++count;
    }
    return count;
}

bool has_loaded(const std::string& file_name) {
    std::ifstream maps("/proc/self/maps");
    const std::string text((std::istreambuf_iterator<char>(maps)), {});
    return text.find('/' + file_name + '\n') != std::string::npos;
}

long memory_in_use() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return 0;
#else
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("RssAnon:")) return std::stol(line.substr(8));
    return 0;
#endif
}

}  // namespace test_support
