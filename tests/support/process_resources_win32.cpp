#include <winsock2.h>
// clang-format off
#include <windows.h>
#include <psapi.h>
#include <tlhelp32.h>
// clang-format on

#include <cstdint>

#include "process_resources.h"

namespace test_support {
namespace {

// Handles are small multiples of four. They are counted one by one, as Wine doesn't tell how many there are.
template <class IsOne>
std::ptrdiff_t count_handles(IsOne&& is_one) {
    constexpr std::uintptr_t most = 0x8000;
    std::ptrdiff_t count = 0;
    for (std::uintptr_t value = 4; value < most; value += 4)
        if (is_one(reinterpret_cast<HANDLE>(value))) ++count;
    return count;
}

}  // namespace

std::ptrdiff_t thread_count() {
    const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    std::ptrdiff_t count = 0;
    for (BOOL more = ::Thread32First(snapshot, &entry); more; more = ::Thread32Next(snapshot, &entry))
        if (entry.th32OwnerProcessID == ::GetCurrentProcessId()) ++count;
    ::CloseHandle(snapshot);
    return count;
}

const std::ptrdiff_t handles_of_locks = 3;

std::ptrdiff_t handle_count() {
    return count_handles([](HANDLE handle) {
        DWORD flags = 0;
        return ::GetHandleInformation(handle, &flags) != 0;
    });
}

std::ptrdiff_t socket_count() {
    WSADATA data;
    if (::WSAStartup(MAKEWORD(2, 2), &data) != 0) return -1;
    const std::ptrdiff_t count = count_handles([](HANDLE handle) {
        int type = 0;
        int size = sizeof type;
        return ::getsockopt(reinterpret_cast<SOCKET>(handle), SOL_SOCKET, SO_TYPE,
                            reinterpret_cast<char*>(&type), &size) == 0;
    });
    ::WSACleanup();
    return count;
}

bool has_loaded(const std::string& file_name) { return ::GetModuleHandleA(file_name.c_str()) != nullptr; }

long memory_in_use() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    if (!::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters)) return 0;
    return static_cast<long>(counters.PagefileUsage / 1024);
}

}  // namespace test_support
