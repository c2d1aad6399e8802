#include "os/file.h"

#include "in_force.h"
#include "system_files.h"

namespace os {

namespace {
InForce<FileSystem, system_files> in_force;
}

FileSystem& files() { return in_force.get(); }

FileSystem* replace_files(FileSystem* file_system) { return in_force.replace(file_system); }

}  // namespace os
