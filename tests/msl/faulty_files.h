// The system's files, but the n-th call fails, or comes short.
#pragma once

#include <algorithm>
#include <cerrno>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "os/error.h"
#include "os/file.h"

// What becomes of one call.
enum class Fault {
    fails,       // with the error that was asked for; a close does its work all the same
    moves_half,  // a read or write moves half of its bytes and succeeds
    moves_none,  // a read or write moves nothing and succeeds
    none,        // it does its work
};

class FaultyFiles final : public os::FileSystem {
public:
    FaultyFiles() : m_real(*os::replace_files(this)) {}
    ~FaultyFiles() override { os::replace_files(nullptr); }

    // The call number `nth`, counted from 1 and from now, of the operation with this name fails with `error`.
    void fail(const std::string& operation, int nth, int error) {
        m_operation = operation;
        spoil(nth, Fault::fails, error);
    }

    // The same for calls of any operation; the second for all calls from that one on.
    void spoil_call(int nth, Fault fault, int error) {
        m_operation.clear();
        spoil(nth, fault, error);
    }
    void fail_from(int nth, int error) {
        spoil_call(nth, Fault::fails, error);
        m_for_good = true;
    }

    // Is called before a call fails, and behind a write that comes short.
    void on_fault(std::function<void()> action) { m_action = std::move(action); }

    // Something happens just before the n-th call of an operation, which then does its work.
    void before(const std::string& operation, int nth, std::function<void()> action) {
        m_operation = operation;
        spoil(nth, Fault::none, 0);
        on_fault(std::move(action));
    }

    // The operations called so far, how often one of them was, and the sizes that reads and writes asked for,
    // as text.
    const std::vector<std::string>& all_calls() const { return m_calls; }
    int calls(const std::string& operation) const {
        return static_cast<int>(std::count(m_calls.begin(), m_calls.end(), operation));
    }
    const std::string& sizes() const { return m_sizes; }

    int open_handles() const { return static_cast<int>(m_open.size()); }
    // Calls with a handle that was closed before.
    int stray_calls() const { return m_stray; }

    // Reads and writes move no more bytes than this in a call.
    void shorten(std::uint32_t most) { m_most = most; }

    os::FileHandle open(const char* path, os::OpenMode mode, bool write_through) override {
        m_write_through = write_through;
        if (!passes("open")) return os::no_file;
        const os::FileHandle file = m_real.open(path, mode, write_through);
        if (file != os::no_file) m_open.insert(file);
        return file;
    }
    bool read(os::FileHandle file, void* target, std::uint32_t size, std::uint32_t& done) override {
        m_sizes += " r" + std::to_string(size);
        return passes("read", file) && m_real.read(file, target, bounded(size), done);
    }
    bool write(os::FileHandle file, const void* data, std::uint32_t size, std::uint32_t& done) override {
        m_sizes += " w" + std::to_string(size);
        const bool written = passes("write", file) && m_real.write(file, data, bounded(size), done);
        if (m_short && m_action) m_action();
        return written;
    }
    bool flush(os::FileHandle file) override { return passes("flush", file) && m_real.flush(file); }
    bool close(os::FileHandle file) override {
        const bool passed = passes("close", file);
        const int error = os::last_error();
        m_open.erase(file);
        const bool closed = m_real.close(file);
        if (!passed) os::set_last_error(error);
        return passed && closed;
    }
    bool make_temporary(const char* directory, const char* prefix, std::string& path) override {
        return passes("make_temporary") && m_real.make_temporary(directory, prefix, path);
    }
    bool take_rights(os::FileHandle file, const char* of) override {
        return passes("take_rights", file) && m_real.take_rights(file, of);
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
    void spoil(int nth, Fault fault, int error) {
        m_countdown = nth;
        m_fault = fault;
        m_error = error;
        m_for_good = false;
    }

    std::uint32_t bounded(std::uint32_t size) {
        if (m_short) return m_fault == Fault::moves_half ? size / 2 : 0;
        return m_most && m_most < size ? m_most : size;
    }

    bool passes(const char* operation, os::FileHandle file) {
        if (file != os::no_file && !m_open.contains(file)) ++m_stray;
        return passes(operation);
    }

    bool passes(const char* operation) {
        m_calls.emplace_back(operation);
        m_short = false;
        if (!m_operation.empty() && m_operation != operation) return true;
        --m_countdown;
        if (m_countdown != 0 && !(m_for_good && m_countdown < 0)) return true;
        m_short = m_fault == Fault::moves_half || m_fault == Fault::moves_none;
        if (!m_short && m_action) m_action();
        os::set_last_error(m_error);
        return m_fault != Fault::fails;
    }

    os::FileSystem& m_real;
    std::string m_operation;  // empty stands for any
    int m_countdown = 0;
    Fault m_fault = Fault::fails;
    int m_error = 0;
    bool m_for_good = false;
    bool m_short = false;  // the call under way comes short
    std::uint32_t m_most = 0;
    std::vector<std::string> m_calls;
    std::string m_sizes;
    std::set<os::FileHandle> m_open;
    int m_stray = 0;
    bool m_write_through = false;
    std::function<void()> m_action;
};
