#include "new_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "exit_status.h"
#include "interrupt.h"
#include "os/error.h"
#include "os/file.h"

namespace zxhost {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t piece = 1 << 20;  // between two looks at Ctrl-C

[[noreturn]] void fail(const std::string& target, const std::string& why) {
    throw HostError(ExitStatus::WrongUsage, "the file " + target + " can't be written: " + why,
                    "name a file in a directory where you may write");
}

[[noreturn]] void fail_by_system(const std::string& target) {
    fail(target, os::error_text(os::last_error()));
}

enum class Kind { Nothing, File, Stream };

// What stands at the target's place.
Kind kind_of(const std::string& target) {
    std::error_code error;
    const fs::file_status there = fs::symlink_status(target, error);
    if (there.type() == fs::file_type::not_found) return Kind::Nothing;
    if (there.type() == fs::file_type::none) fail(target, error.message());
    const fs::file_type type = fs::status(target, error).type();
    if (type == fs::file_type::directory) fail(target, "it is a directory");
    // A link that leads nowhere is as good as a file.
    return type == fs::file_type::regular || type == fs::file_type::not_found ? Kind::File : Kind::Stream;
}

Kind permitted(const std::string& target, bool replace) {
    if (target.empty()) fail(target, "it has no name");
    const Kind kind = kind_of(target);
    if (kind != Kind::Nothing && !replace)
        throw HostError(ExitStatus::WrongUsage, "the file " + target + " is there already",
                        "name another one, or replace it with --force");
    return kind;
}

// The file that a link leads to, which stays one.
std::string behind_links(const std::string& target) {
    std::error_code error;
    const fs::path real = fs::canonical(target, error);
    return error ? target : real.string();
}

class NewFile {
public:
    NewFile(const std::string& target, bool replace)
        : m_told(target), m_target(target), m_may_replace(replace), m_kind(permitted(target, replace)) {
        if (m_kind == Kind::Stream) return;
        m_target = behind_links(target);
        const fs::path path(m_target);
        if (path.filename().empty()) fail(m_told, "it is a directory");
        std::string made;
        if (!os::files().make_temporary(path.parent_path().string().c_str(), "zxh", made))
            fail_by_system(m_told);
        m_temporary = made;
    }
    ~NewFile() {
        if (m_handle != os::no_file) os::files().close(m_handle);
        if (!m_temporary.empty()) os::files().remove(m_temporary.c_str());
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    void write(std::string_view bytes) {
        if (m_handle == os::no_file) open();
        while (!bytes.empty()) {
            std::uint32_t done = 0;
            const auto size = static_cast<std::uint32_t>(std::min(bytes.size(), piece));
            if (!os::files().write(m_handle, bytes.data(), size, done)) fail_by_system(m_told);
            if (done == 0) fail(m_told, "it takes no more");
            bytes.remove_prefix(done);
        }
    }

    // Everything is on the disk afterwards.
    void finish() {
        const bool flushed = m_kind == Kind::Stream || os::files().flush(m_handle);
        const std::string why = flushed ? "" : os::error_text(os::last_error());
        const os::FileHandle handle = m_handle;
        m_handle = os::no_file;
        if (!os::files().close(handle)) fail_by_system(m_told);
        if (!flushed) fail(m_told, why);
    }

    const std::string& path() const { return m_temporary.empty() ? m_target : m_temporary; }

    void keep() {
        if (m_kind == Kind::Stream) return;
        permitted(m_told, m_may_replace);  // somebody may have made it meanwhile
        if (!os::files().rename(m_temporary.c_str(), m_target.c_str())) fail_by_system(m_told);
        m_temporary.clear();
    }

private:
    void open() {
        m_handle = os::files().open(path().c_str(), os::OpenMode::Truncate, false);
        if (m_handle == os::no_file) fail_by_system(m_told);
        if (m_kind == Kind::File) os::files().take_rights(m_handle, m_target.c_str());
    }

    const std::string m_told;  // as the user calls it
    std::string m_target;
    const bool m_may_replace;
    const Kind m_kind;
    std::string m_temporary;  // empty: none, or it has got its name
    os::FileHandle m_handle = os::no_file;
};

void stop_if(const InterruptWatch& watch, const std::string& target) {
    if (watch.interrupted())
        throw HostError(ExitStatus::MachineError, "aborted: the file " + target + " is not written");
}

}  // namespace

void check_new_file(const std::string& target, bool replace) { const NewFile probe(target, replace); }

void write_new_file(const std::string& target, bool replace, std::string_view bytes,
                    const std::function<void(const std::string& path)>& verify) {
    const InterruptWatch watch;
    NewFile file(target, replace);
    do {
        stop_if(watch, target);
        file.write(bytes.substr(0, piece));
        bytes.remove_prefix(std::min(bytes.size(), piece));
    } while (!bytes.empty());
    file.finish();
    if (verify) verify(file.path());
    stop_if(watch, target);
    file.keep();
}

}  // namespace zxhost
