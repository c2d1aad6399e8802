// A registry of a test's own: adapters with their values, errors on demand, and a count of the keys that are
// open. What a caller hands in is held against the rules of os/registry.h.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "os/registry.h"

class MemoryRegistry : public os::Registry {
public:
    static constexpr const char* tree = "SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Interfaces";

    struct Value {
        std::uint32_t type;
        std::string bytes;
    };
    struct Adapter {
        std::string name;
        std::map<std::string, Value> values;
    };

    static Value dword(std::uint32_t number) {
        return {os::registry_dword, {reinterpret_cast<const char*>(&number), sizeof number}};
    }
    static Value text(const std::string& text) { return {os::registry_string, text + std::string(1, '\0')}; }

    // An adapter without DHCP.
    Adapter& add(const std::string& name, const std::string& ip, const std::string& mask) {
        return adapters.emplace_back(Adapter{name, {{"IPAddress", text(ip)}, {"SubnetMask", text(mask)}}});
    }
    // One that stands in the way of no address, and needs no warning.
    void add_fast() { add("fast", "0.0.0.0", "0.0.0.0").values["TcpAckFrequency"] = dword(1); }

    // The operation on this key (its name, or "" for the tree) or value answers with this error.
    void fail(const std::string& operation, const std::string& what, long error) {
        m_failures[{operation, what}] = error;
    }

    long open_key(const char* path, std::uint32_t access, Key& key) override {
        calls.push_back(std::string("open ") + path);
        const std::string whole = path;
        const bool is_tree = whole == tree;
        if (!is_tree && !whole.starts_with(std::string(tree) + "\\")) return os::registry_no_value;
        const std::string name = is_tree ? "" : whole.substr(std::strlen(tree) + 1);
        access_asked.push_back(access);
        if (const long error = failure("open", name)) return error;
        const Adapter* const found = is_tree ? nullptr : find(name);
        if (!is_tree && !found) return os::registry_no_value;
        auto* const open = new std::string(name);
        m_open.insert(open);
        key = open;
        return 0;
    }

    void close_key(Key key) override {
        EXPECT_EQ(m_open.erase(key), 1U) << "a key that isn't open is closed";
        delete static_cast<std::string*>(key);
    }

    long enumerate_key(Key key, std::uint32_t n, char* name, std::uint32_t& size) override {
        EXPECT_EQ(size, 259U);
        if (const long error = failure("enumerate", std::to_string(n))) return error;
        EXPECT_EQ(name_of(key), "");
        if (n >= adapters.size()) return os::registry_no_more_keys;
        if (adapters[n].name.size() + 1 > size) return os::registry_more_data;
        size = static_cast<std::uint32_t>(adapters[n].name.size());
        std::memcpy(name, adapters[n].name.c_str(), size + 1);
        return 0;
    }

    long query_value(Key key, const char* name, std::uint32_t& type, void* data,
                     std::uint32_t& size) override {
        calls.push_back(std::string("query ") + name);
        if (const long error = failure("query", name)) return error;
        const Adapter& adapter = *find(name_of(key));
        const auto found = adapter.values.find(name);
        if (found == adapter.values.end()) return os::registry_no_value;
        const std::string& bytes = found->second.bytes;
        const bool fits = bytes.size() <= size;
        type = found->second.type;
        size = static_cast<std::uint32_t>(bytes.size());
        if (!fits) return os::registry_more_data;
        std::memcpy(data, bytes.data(), bytes.size());
        return 0;
    }

    long set_dword(Key key, const char* name, std::uint32_t value) override {
        calls.push_back(std::string("set ") + name);
        if (const long error = failure("set", name)) return error;
        find(name_of(key))->values[name] = dword(value);
        return 0;
    }

    bool version_is_at_least(std::uint32_t major, std::uint32_t minor) override {
        return version >= std::pair{major, minor};
    }

    std::size_t open_keys() const { return m_open.size(); }

    std::vector<Adapter> adapters;
    std::pair<std::uint32_t, std::uint32_t> version{10, 0};
    std::vector<std::string> calls;
    std::vector<std::uint32_t> access_asked;

private:
    static const std::string& name_of(Key key) { return *static_cast<std::string*>(key); }

    Adapter* find(const std::string& name) {
        const auto found = std::find_if(adapters.begin(), adapters.end(),
                                        [&](const Adapter& adapter) { return adapter.name == name; });
        return found == adapters.end() ? nullptr : &*found;
    }

    long failure(const std::string& operation, const std::string& what) const {
        const auto found = m_failures.find({operation, what});
        return found == m_failures.end() ? 0 : found->second;
    }

    std::map<std::pair<std::string, std::string>, long> m_failures;
    std::set<Key> m_open;
};
