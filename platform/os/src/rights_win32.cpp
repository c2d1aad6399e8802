#include "rights_win32.h"

#include <aclapi.h>

#include <memory>

namespace os {

namespace {

struct Free {
    void operator()(void* block) const { LocalFree(block); }
};
using Descriptor = std::unique_ptr<void, Free>;

struct Rights {
    Descriptor descriptor;  // the list stands in it
    PACL list = nullptr;
    SECURITY_INFORMATION kind = DACL_SECURITY_INFORMATION;
};

DWORD read_rights(const char* path, Rights& rights) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD error = GetNamedSecurityInfoA(path, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                              nullptr, &rights.list, nullptr, &descriptor);
    if (error != ERROR_SUCCESS) return error;
    rights.descriptor.reset(descriptor);
    SECURITY_DESCRIPTOR_CONTROL control{};
    DWORD revision = 0;
    if (!GetSecurityDescriptorControl(descriptor, &control, &revision)) return GetLastError();
    // Whether the directory's rights go on to the file.
    const bool is_protected = (control & SE_DACL_PROTECTED) != 0;
    rights.kind |= is_protected ? PROTECTED_DACL_SECURITY_INFORMATION : UNPROTECTED_DACL_SECURITY_INFORMATION;
    return ERROR_SUCCESS;
}

// The handle was opened for the data alone.
DWORD write_rights(HANDLE file, const Rights& rights) {
    constexpr DWORD anything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE changeable = ReOpenFile(file, WRITE_DAC | READ_CONTROL, anything, 0);
    if (changeable == INVALID_HANDLE_VALUE) return GetLastError();
    const DWORD error =
        SetSecurityInfo(changeable, SE_FILE_OBJECT, rights.kind, nullptr, nullptr, rights.list, nullptr);
    CloseHandle(changeable);
    return error;
}

}  // namespace

bool copy_rights(HANDLE file, const char* of) {
    Rights rights;
    DWORD error = read_rights(of, rights);
    if (error == ERROR_SUCCESS) error = write_rights(file, rights);
    SetLastError(error);
    return error == ERROR_SUCCESS;
}

}  // namespace os
