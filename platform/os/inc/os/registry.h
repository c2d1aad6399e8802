// The small part of the registry that tells how the network adapters are set, and the system's version.
//
// The operations are those of Windows' registry below HKEY_LOCAL_MACHINE, with its numbers: a result is 0 or
// a system error number. Without a registry a port offers one key for each address of an adapter, below
// SYSTEM\CurrentControlSet\Services\Tcpip\Parameters\Interfaces, that can be read and not be written, and
// counts as version 5.1. Of a key it tells "IPAddress" and "SubnetMask" as they are, and, if this system's
// socket_acknowledge works, "TcpAckFrequency" as 1.
//
// Any thread may call; a key is used by one at a time.
#pragma once

#include <cstdint>

namespace os {

// Error numbers that a caller may have to tell from others.
enum : long {
    registry_done = 0,
    registry_no_value = 2,  // no value, or no key, of that name
    registry_no_access = 5,
    registry_wrong_data = 13,
    registry_more_data = 234,  // what was asked for is longer than the buffer
    registry_no_more_keys = 259
};

// What a key is opened for.
enum : std::uint32_t {
    registry_enumerate = 0x8,
    registry_read = 0x20019,
    registry_read_write = 0x2001F,
};

// Types of values.
enum : std::uint32_t { registry_string = 1, registry_dword = 4, registry_strings = 7 };

class Registry {
public:
    using Key = void*;

    virtual ~Registry() = default;

    // Opens the key of this path, separated by '\'. An open key is closed by its owner, once.
    virtual long open_key(const char* path, std::uint32_t access, Key& key) = 0;
    virtual void close_key(Key key) = 0;

    // The name of the n-th subkey, from 0. `size` is that of the buffer, and then the name's length without
    // its NUL.
    virtual long enumerate_key(Key key, std::uint32_t n, char* name, std::uint32_t& size) = 0;

    // Reads the value into a buffer of `size` bytes; `type` and `size` become those of the value, also if it
    // is too long. A text may come without a NUL.
    virtual long query_value(Key key, const char* name, std::uint32_t& type, void* data,
                             std::uint32_t& size) = 0;

    virtual long set_dword(Key key, const char* name, std::uint32_t value) = 0;

    // Is the system's version this one or a later one?
    virtual bool version_is_at_least(std::uint32_t major, std::uint32_t minor) = 0;
};

// The system's own; lives as long as the process.
Registry& system_registry();

}  // namespace os
