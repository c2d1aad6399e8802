#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "os/registry.h"
#include "os/socket.h"

namespace os {
namespace {

constexpr std::string_view tree = R"(SYSTEM\CurrentControlSet\Services\Tcpip\Parameters\Interfaces)";

struct Adapter {
    std::string name;
    std::string address;
    std::string mask;
};

// An open key: the tree with all of its adapters, or one of them.
struct OpenKey {
    bool is_tree = true;
    std::vector<Adapter> adapters;
};

std::string text_of(const sockaddr* address) {
    sockaddr_in ip{};
    if (!address) return "255.255.255.255";
    std::memcpy(&ip, address, sizeof ip);
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &ip.sin_addr, text, sizeof text);
    return text;
}

// Further addresses of an adapter are adapters of their own: "eth0", "eth0 2".
std::string new_name(const std::vector<Adapter>& adapters, const std::string& name) {
    std::string result = name;
    for (int number = 2; std::any_of(adapters.begin(), adapters.end(),
                                     [&](const Adapter& adapter) { return adapter.name == result; });
         ++number)
        result = name + " " + std::to_string(number);
    return result;
}

// The adapters with an IPv4 address; 0 or the system's error number.
long list_adapters(std::vector<Adapter>& adapters) {
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0) return errno;
    const std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> owner(list, freeifaddrs);
    for (const ifaddrs* entry = list; entry; entry = entry->ifa_next)
        if (entry->ifa_addr && entry->ifa_addr->sa_family == AF_INET)
            adapters.push_back(
                {new_name(adapters, entry->ifa_name), text_of(entry->ifa_addr), text_of(entry->ifa_netmask)});
    return registry_done;
}

long give(const void* from, std::size_t length, void* to, std::uint32_t& size) {
    const bool fits = length <= size;
    size = static_cast<std::uint32_t>(length);
    if (!fits) return registry_more_data;
    std::memcpy(to, from, length);
    return registry_done;
}

class AdapterRegistry : public Registry {
public:
    long open_key(const char* path, std::uint32_t access, Key& key) override {
        const std::string_view whole = path;
        if (!whole.starts_with(tree)) return registry_no_value;
        auto open = std::make_unique<OpenKey>();
        if (const long error = list_adapters(open->adapters)) return error;
        std::string_view name = whole.substr(tree.size());
        if (!name.empty()) {
            if (name.front() != '\\') return registry_no_value;
            name.remove_prefix(1);
            open->is_tree = false;
            std::erase_if(open->adapters, [&](const Adapter& adapter) { return adapter.name != name; });
            if (open->adapters.empty()) return registry_no_value;
            if (access == registry_read_write) return registry_no_access;
        }
        key = open.release();
        return registry_done;
    }

    void close_key(Key key) override { delete static_cast<OpenKey*>(key); }

    long enumerate_key(Key key, std::uint32_t n, char* name, std::uint32_t& size) override {
        const OpenKey& open = *static_cast<OpenKey*>(key);
        if (!open.is_tree || n >= open.adapters.size()) return registry_no_more_keys;
        const std::string& found = open.adapters[n].name;
        const long result = give(found.c_str(), found.size() + 1, name, size);
        if (result == registry_done) --size;
        return result;
    }

    long query_value(Key key, const char* name, std::uint32_t& type, void* data,
                     std::uint32_t& size) override {
        const OpenKey& open = *static_cast<OpenKey*>(key);
        const std::string_view asked = name;
        if (open.is_tree) return registry_no_value;
        const Adapter& adapter = open.adapters.front();
        if (asked == "IPAddress" || asked == "SubnetMask") {
            const std::string& text = asked == "IPAddress" ? adapter.address : adapter.mask;
            type = registry_string;
            return give(text.c_str(), text.size() + 1, data, size);
        }
        if (asked != "TcpAckFrequency" || !socket_can_acknowledge()) return registry_no_value;
        const std::uint32_t each_segment = 1;
        type = registry_dword;
        return give(&each_segment, sizeof each_segment, data, size);
    }

    long set_dword(Key, const char*, std::uint32_t) override { return registry_no_access; }

    bool version_is_at_least(std::uint32_t major, std::uint32_t minor) override {
        return major < 5 || (major == 5 && minor <= 1);
    }
};

}  // namespace

Registry& system_registry() {
    static AdapterRegistry registry;
    return registry;
}

}  // namespace os
