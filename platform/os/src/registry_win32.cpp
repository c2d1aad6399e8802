#include <initializer_list>

#include "os/registry.h"
#include "windows_api.h"

namespace os {
namespace {

static_assert(registry_done == ERROR_SUCCESS && registry_no_value == ERROR_FILE_NOT_FOUND &&
              registry_no_access == ERROR_ACCESS_DENIED && registry_wrong_data == ERROR_INVALID_DATA &&
              registry_more_data == ERROR_MORE_DATA && registry_no_more_keys == ERROR_NO_MORE_ITEMS);
static_assert(registry_enumerate == KEY_ENUMERATE_SUB_KEYS && registry_read == KEY_READ &&
              registry_read_write == (KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY));
static_assert(registry_string == REG_SZ && registry_dword == REG_DWORD && registry_strings == REG_MULTI_SZ);

HKEY native(Registry::Key key) { return static_cast<HKEY>(key); }

class Win32Registry final : public Registry {
public:
    long open_key(const char* path, std::uint32_t access, Key& key) override {
        HKEY opened = nullptr;
        const long error = ::RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, access, &opened);
        if (error == registry_done) key = opened;
        return error;
    }

    void close_key(Key key) override { ::RegCloseKey(native(key)); }

    long enumerate_key(Key key, std::uint32_t n, char* name, std::uint32_t& size) override {
        DWORD length = size;
        const long error = ::RegEnumKeyExA(native(key), n, name, &length, nullptr, nullptr, nullptr, nullptr);
        size = length;
        return error;
    }

    long query_value(Key key, const char* name, std::uint32_t& type, void* data,
                     std::uint32_t& size) override {
        DWORD found_type = type;
        DWORD found_size = size;
        const long error = ::RegQueryValueExA(native(key), name, nullptr, &found_type,
                                              static_cast<BYTE*>(data), &found_size);
        type = found_type;
        size = found_size;
        return error;
    }

    long set_dword(Key key, const char* name, std::uint32_t value) override {
        const DWORD number = value;
        return ::RegSetValueExA(native(key), name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                                sizeof number);
    }

    bool version_is_at_least(std::uint32_t major, std::uint32_t minor) override {
        OSVERSIONINFOEXW wanted{};
        wanted.dwOSVersionInfoSize = sizeof wanted;
        wanted.dwMajorVersion = major;
        wanted.dwMinorVersion = minor;
        wanted.wServicePackMajor = 0;
        DWORDLONG conditions = 0;
        for (const DWORD number : {VER_MAJORVERSION, VER_MINORVERSION, VER_SERVICEPACKMAJOR})
            conditions = ::VerSetConditionMask(conditions, number, VER_GREATER_EQUAL);
        constexpr DWORD together = VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR;
        return ::VerifyVersionInfoW(&wanted, together, conditions) != 0;
    }
};

}  // namespace

Registry& system_registry() {
    static Win32Registry registry;
    return registry;
}

}  // namespace os
