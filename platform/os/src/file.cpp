#include "os/file.h"

#include <atomic>

#include "system_files.h"

namespace os {

namespace {

// Null stands for the system's.
std::atomic<FileSystem*> in_force{nullptr};

}  // namespace

FileSystem& files() {
    FileSystem* const file_system = in_force.load(std::memory_order_acquire);
    return file_system ? *file_system : system_files();
}

FileSystem* replace_files(FileSystem* file_system) {
    FileSystem* const old = in_force.exchange(file_system, std::memory_order_acq_rel);
    return old ? old : &system_files();
}

}  // namespace os
