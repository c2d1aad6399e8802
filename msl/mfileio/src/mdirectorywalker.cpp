#include "mdirectorywalker.h"

#include "fileops.h"
#include "os/path.h"

namespace {

char type_code(const os::DirectoryEntry& entry) {
    if (entry.is_directory) return 'd';
    return entry.is_hidden ? ' ' : '-';
}

}  // namespace

MDirectoryWalker::MDirectoryWalker() { os::full_path(".", m_path); }

bool MDirectoryWalker::SetPath(const char* path) {
    std::string full;
    if (!os::full_path(file_is_absolute(path) ? path : m_path + "\\" + path, full)) return false;
    os::FileInfo info;
    if (!os::files().info(full.c_str(), info) || !info.is_directory) return false;
    m_path = full;
    return true;
}

const char* MDirectoryWalker::GetFirst(char* type) {
    m_next = 0;
    if (!os::files().find((m_path + "\\*.*").c_str(), m_found)) m_found.clear();
    return GetNext(type);
}

const char* MDirectoryWalker::GetNext(char* type) {
    if (m_next == m_found.size()) return nullptr;
    const os::DirectoryEntry& entry = m_found[m_next++];
    if (type) *type = type_code(entry);
    return entry.name.c_str();
}
