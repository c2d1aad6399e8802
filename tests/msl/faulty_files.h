// The system's files, but the n-th call of one kind fails, or comes short.
#pragma once

#include <cerrno>
#include <map>
#include <string>

#include "os/file.h"

class FaultyFiles final : public os::FileSystem {
public:
    FaultyFiles() : m_real(*os::replace_files(this)) {}
    ~FaultyFiles() override { os::replace_files(nullptr); }

    // The call number `nth`, counted from 1 and from now, of the operation with this name fails with `error`.
    void fail(const std::string& operation, int nth, int error) {
        m_operation = operation;
        m_countdown = nth;
        m_error = error;
    }

    // How often an operation was called, and the sizes that reads and writes asked for, as text.
    int calls(const std::string& operation) const {
        const auto found = m_calls.find(operation);
        return found == m_calls.end() ? 0 : found->second;
    }
    const std::string& sizes() const { return m_sizes; }
    int open_handles() const { return m_open; }

    // Reads and writes move no more bytes than this in a call.
    void shorten(std::uint32_t most) { m_most = most; }

    os::FileHandle open(const char* path, os::OpenMode mode, bool write_through) override {
        m_write_through = write_through;
        if (!passes("open")) return os::no_file;
        const os::FileHandle file = m_real.open(path, mode, write_through);
        if (file != os::no_file) ++m_open;
        return file;
    }
    bool read(os::FileHandle file, void* target, std::uint32_t size, std::uint32_t& done) override {
        m_sizes += " r" + std::to_string(size);
        return passes("read") && m_real.read(file, target, bounded(size), done);
    }
    bool write(os::FileHandle file, const void* data, std::uint32_t size, std::uint32_t& done) override {
        m_sizes += " w" + std::to_string(size);
        return passes("write") && m_real.write(file, data, bounded(size), done);
    }
    bool flush(os::FileHandle file) override { return passes("flush") && m_real.flush(file); }
    bool close(os::FileHandle file) override {
        --m_open;
        const bool closed = m_real.close(file);
        return passes("close") && closed;
    }
    bool make_temporary(const char* directory, const char* prefix, std::string& path) override {
        return passes("make_temporary") && m_real.make_temporary(directory, prefix, path);
    }
    bool info(const char* path, os::FileInfo& out) override {
        return passes("info") && m_real.info(path, out);
    }
    bool access(const char* path, os::Access kind) override {
        return passes("access") && m_real.access(path, kind);
    }
    bool find(const char* pattern, std::vector<os::DirectoryEntry>& out) override {
        return passes("find") && m_real.find(pattern, out);
    }
    bool remove(const char* path) override { return passes("remove") && m_real.remove(path); }
    bool rename(const char* from, const char* to) override {
        return passes("rename") && m_real.rename(from, to);
    }
    bool make_writable(const char* path) override {
        return passes("make_writable") && m_real.make_writable(path);
    }

    bool last_open_was_write_through() const { return m_write_through; }

private:
    std::uint32_t bounded(std::uint32_t size) const { return m_most && m_most < size ? m_most : size; }

    bool passes(const std::string& operation) {
        ++m_calls[operation];
        if (operation != m_operation || --m_countdown != 0) return true;
        errno = m_error;
        return false;
    }

    os::FileSystem& m_real;
    std::string m_operation;
    int m_countdown = 0;
    int m_error = 0;
    std::uint32_t m_most = 0;
    std::map<std::string, int> m_calls;
    std::string m_sizes;
    int m_open = 0;
    bool m_write_through = false;
};
