// One file in memory, whatever its name is.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>

#include "os/file.h"

class MemoryFiles final : public os::FileSystem {
public:
    explicit MemoryFiles(std::string_view start) : content(start) { os::replace_files(this); }
    ~MemoryFiles() override { os::replace_files(nullptr); }

    std::string content;

    os::FileHandle open(const char*, os::OpenMode mode, bool) override {
        if (mode == os::OpenMode::Truncate) content.clear();
        m_at = 0;
        return 1;
    }
    bool read(os::FileHandle, void* target, std::uint32_t size, std::uint32_t& done) override {
        done = static_cast<std::uint32_t>(std::min<std::size_t>(size, content.size() - m_at));
        if (done > 0) std::memcpy(target, content.data() + m_at, done);
        m_at += done;
        return true;
    }
    bool write(os::FileHandle, const void* data, std::uint32_t size, std::uint32_t& done) override {
        content.append(static_cast<const char*>(data), size);
        done = size;
        return true;
    }
    bool flush(os::FileHandle) override { return true; }
    bool close(os::FileHandle) override { return true; }
    bool access(const char*, os::Access) override { return true; }

    // What the targets don't come to.
    bool make_temporary(const char*, const char*, std::string&) override { return false; }
    bool take_rights(os::FileHandle, const char*) override { return false; }
    bool info(const char*, os::FileInfo&) override { return false; }
    bool find(const char*, std::vector<os::DirectoryEntry>&) override { return false; }
    bool remove(const char*) override { return false; }
    bool rename(const char*, const char*) override { return false; }
    bool make_writable(const char*) override { return false; }

private:
    std::size_t m_at = 0;
};
