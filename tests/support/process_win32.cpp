#include <windows.h>

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

#include "process_child.h"

namespace test_support {
namespace {

constexpr UINT killed_status = 0xC0DEDEAD;  // no program of ours ends with it by itself

std::runtime_error last_failure(const std::string& what) {
    return std::runtime_error(what + ": error " + std::to_string(::GetLastError()));
}

class Handle {
public:
    explicit Handle(HANDLE handle = nullptr) : m_handle(handle) {}
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    void close() {
        if (m_handle && m_handle != INVALID_HANDLE_VALUE) ::CloseHandle(m_handle);
        m_handle = nullptr;
    }
    HANDLE get() const { return m_handle; }
    HANDLE* slot() { return &m_handle; }

private:
    HANDLE m_handle;
};

// As the C library of the child takes it apart again.
std::string quoted(const std::string& word) {
    std::string text = "\"";
    std::size_t backslashes = 0;  // that stand before this place
    for (const char c : word) {
        if (c == '"') text.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text.append(backslashes, '\\') + '"';
}

std::string command_line(const std::string& program, const std::vector<std::string>& arguments) {
    std::string line = quoted(program);
    for (const std::string& argument : arguments) line += ' ' + quoted(argument);
    return line;
}

struct LessIgnoringCase {
    bool operator()(const std::string& a, const std::string& b) const {
        return _stricmp(a.c_str(), b.c_str()) < 0;
    }
};

std::string environment_block(const Process::Environment& changes) {
    std::map<std::string, std::string, LessIgnoringCase> all(changes.begin(), changes.end());
    char* const ours = ::GetEnvironmentStringsA();
    for (const char* entry = ours; *entry; entry += std::char_traits<char>::length(entry) + 1) {
        const std::string text = entry;
        const std::size_t equals = text.find('=', 1);  // some names of the system's begin with one
        if (equals != std::string::npos) all.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    ::FreeEnvironmentStringsA(ours);
    std::string block;
    for (const auto& [name, value] : all) block += name + '=' + value + '\0';
    return block + '\0';
}

Handle& inheritable(Handle& handle) {
    ::SetHandleInformation(handle.get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    return handle;
}

// Handles that a child gets: these, and not those of other children that are started at this time.
class InheritedHandles {
public:
    explicit InheritedHandles(std::vector<HANDLE> handles) : m_handles(std::move(handles)) {
        SIZE_T size = 0;
        ::InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        m_memory.resize(size);
        if (!::InitializeProcThreadAttributeList(get(), 1, 0, &size) ||
            !::UpdateProcThreadAttribute(get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, m_handles.data(),
                                         m_handles.size() * sizeof(HANDLE), nullptr, nullptr))
            throw last_failure("no list of handles");
    }
    ~InheritedHandles() { ::DeleteProcThreadAttributeList(get()); }
    InheritedHandles(const InheritedHandles&) = delete;
    InheritedHandles& operator=(const InheritedHandles&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST get() {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_memory.data());
    }

private:
    std::vector<HANDLE> m_handles;
    std::vector<std::byte> m_memory;
};

// Whoever is in it ends with this process.
HANDLE job_of_children() {
    static const HANDLE job = [] {
        const HANDLE made = ::CreateJobObjectA(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        ::SetInformationJobObject(made, JobObjectExtendedLimitInformation, &limits, sizeof limits);
        return made;
    }();
    return job;
}

// To send Ctrl-C to a child's console, this process must be at it, and then hears it, too.
void interrupt_console_of(DWORD process) {
    static std::mutex one_console;
    const std::lock_guard guard(one_console);
    [[maybe_unused]] static const BOOL deaf =
        ::SetConsoleCtrlHandler([](DWORD event) -> BOOL { return event == CTRL_C_EVENT; }, TRUE);
    ::FreeConsole();
    if (!::AttachConsole(process)) return;
    ::GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    ::FreeConsole();
}

}  // namespace

// Windows has no wait for a pipe, so a thread reads each.
struct Process::Child::System {
    Handle process;
    DWORD id = 0;
    std::array<Handle, 2> pipes;
    std::array<std::thread, 2> readers;
    std::mutex mutex;
    std::condition_variable changed;
    Texts arrived;
    int open_pipes = 2;

    void read(std::size_t stream) {
        std::array<char, 65536> buffer;
        DWORD count = 0;
        while (::ReadFile(pipes[stream].get(), buffer.data(), static_cast<DWORD>(buffer.size()), &count,
                          nullptr)) {
            const std::lock_guard guard(mutex);
            arrived[stream].append(buffer.data(), count);
            changed.notify_one();
        }
        const std::lock_guard guard(mutex);
        --open_pipes;
        changed.notify_one();
    }

    bool has_arrived() const { return !arrived[0].empty() || !arrived[1].empty(); }
};

Process::Child::Child(const std::string& program, const std::vector<std::string>& arguments,
                      const Environment& environment, const std::string& input_file)
    : m_system(std::make_unique<System>()) {
    Handle in(::CreateFileA(input_file.empty() ? "NUL" : input_file.c_str(), GENERIC_READ,
                            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    std::array<Handle, 2> theirs;
    for (std::size_t i = 0; i < theirs.size(); ++i)
        if (!::CreatePipe(m_system->pipes[i].slot(), theirs[i].slot(), nullptr, 0))
            throw last_failure("no pipe");
    STARTUPINFOEXA start{};
    start.StartupInfo.cb = sizeof start;
    start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start.StartupInfo.hStdInput = inheritable(in).get();
    start.StartupInfo.hStdOutput = inheritable(theirs[0]).get();
    start.StartupInfo.hStdError = inheritable(theirs[1]).get();
    InheritedHandles inherited({in.get(), theirs[0].get(), theirs[1].get()});
    start.lpAttributeList = inherited.get();
    std::string line = command_line(program, arguments);
    std::string block = environment_block(environment);
    PROCESS_INFORMATION made{};
    // A console of its own, for Ctrl-C to reach it and nobody else.
    if (!::CreateProcessA(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                          CREATE_NO_WINDOW | CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT, block.data(),
                          nullptr, &start.StartupInfo, &made))
        throw last_failure("can't start " + program);
    ::AssignProcessToJobObject(job_of_children(), made.hProcess);
    ::ResumeThread(made.hThread);
    ::CloseHandle(made.hThread);
    *m_system->process.slot() = made.hProcess;
    m_system->id = made.dwProcessId;
    for (std::size_t i = 0; i < theirs.size(); ++i) {
        theirs[i].close();
        m_system->readers[i] = std::thread([system = m_system.get(), i] { system->read(i); });
    }
}

Process::Child::~Child() {
    kill();
    for (std::thread& reader : m_system->readers)
        if (reader.joinable()) reader.join();
}

bool Process::Child::read_some(Texts& texts, Time until) {
    std::unique_lock lock(m_system->mutex);
    const auto has_news = [this] { return m_system->has_arrived() || m_system->open_pipes == 0; };
    if (!m_system->changed.wait_until(lock, until, has_news) || !m_system->has_arrived()) return false;
    for (std::size_t i = 0; i < texts.size(); ++i)
        texts[i] += std::exchange(m_system->arrived[i], std::string());
    return true;
}

void Process::Child::interrupt() const {
    if (m_system->process.get()) interrupt_console_of(m_system->id);
}

void Process::Child::kill() const {
    if (m_system->process.get()) ::TerminateProcess(m_system->process.get(), killed_status);
}

long Process::Child::id() const { return static_cast<long>(m_system->id); }

void Process::Child::take_status(ProcessResult& result) {
    DWORD status = 0;
    if (!m_system->process.get()) return;
    ::WaitForSingleObject(m_system->process.get(), INFINITE);
    ::GetExitCodeProcess(m_system->process.get(), &status);
    m_system->process.close();
    result.killed = status == killed_status;
    if (!result.killed) result.exit_status = static_cast<int>(status);
}

void kill_this_process() {
    ::TerminateProcess(::GetCurrentProcess(), killed_status);
    while (true) ::Sleep(INFINITE);
}

}  // namespace test_support
