#include "rights_win32.h"

#include <vector>

namespace os {

namespace {

// With the list of rights in it; empty, with the reason in GetLastError(), if it can't be read.
std::vector<char> descriptor_of(const char* path) {
    DWORD size = 0;
    GetFileSecurityA(path, DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<char> descriptor(size);
    if (!GetFileSecurityA(path, DACL_SECURITY_INFORMATION, descriptor.data(), size, &size)) return {};
    return descriptor;
}

// What came from the directory stays marked so only if that is asked for.
void keep_inherited(PSECURITY_DESCRIPTOR descriptor) {
    SECURITY_DESCRIPTOR_CONTROL control{};
    DWORD revision = 0;
    if (!GetSecurityDescriptorControl(descriptor, &control, &revision)) return;
    if ((control & SE_DACL_AUTO_INHERITED) == 0) return;
    SetSecurityDescriptorControl(descriptor, SE_DACL_AUTO_INHERIT_REQ, SE_DACL_AUTO_INHERIT_REQ);
}

}  // namespace

bool copy_rights(HANDLE file, const char* of) {
    std::vector<char> descriptor = descriptor_of(of);
    if (descriptor.empty()) return false;
    keep_inherited(descriptor.data());
    // The handle was opened for the data alone.
    constexpr DWORD anything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE changeable = ReOpenFile(file, WRITE_DAC, anything, 0);
    if (changeable == INVALID_HANDLE_VALUE) return false;
    const bool done = SetKernelObjectSecurity(changeable, DACL_SECURITY_INFORMATION, descriptor.data()) != 0;
    const DWORD error = GetLastError();
    CloseHandle(changeable);
    SetLastError(error);
    return done;
}

}  // namespace os
