// What stands for the registry: the adapters of this computer.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

#include "os/registry.h"
#include "os/socket.h"

namespace {

const std::string tree = "SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Interfaces";

class RegistryPosix : public testing::Test {
protected:
    ~RegistryPosix() override {
        for (os::Registry::Key key : m_keys) registry.close_key(key);
    }

    os::Registry::Key open(const std::string& path, std::uint32_t access) {
        os::Registry::Key key = nullptr;
        EXPECT_EQ(registry.open_key(path.c_str(), access, key), os::registry_done) << path;
        if (key) m_keys.push_back(key);
        return key;
    }

    std::string name_of(os::Registry::Key key, std::uint32_t n) {
        char name[260] = "";
        std::uint32_t size = 259;
        if (registry.enumerate_key(key, n, name, size) != os::registry_done) return "";
        EXPECT_EQ(std::strlen(name), size);
        return name;
    }

    std::string text_of(os::Registry::Key key, const char* name) {
        char text[260] = "";
        std::uint32_t size = 259;
        std::uint32_t type = 0;
        EXPECT_EQ(registry.query_value(key, name, type, text, size), os::registry_done) << name;
        EXPECT_EQ(type, os::registry_string);
        EXPECT_EQ(size, std::strlen(text) + 1);
        return text;
    }

    // The adapter with this address; empty if there is none.
    std::string name_of_adapter(const std::string& address) {
        os::Registry::Key key = open(tree, os::registry_enumerate);
        for (std::uint32_t n = 0;; ++n) {
            const std::string name = name_of(key, n);
            if (name.empty()) return "";
            if (text_of(open(tree + "\\" + name, os::registry_read), "IPAddress") == address) return name;
        }
    }

    os::Registry& registry = os::system_registry();

private:
    std::vector<os::Registry::Key> m_keys;
};

TEST_F(RegistryPosix, TheLoopbackAdapterIsThereWithAddressAndMask) {
    const std::string name = name_of_adapter("127.0.0.1");
    ASSERT_NE(name, "");
    EXPECT_EQ(text_of(open(tree + "\\" + name, os::registry_read), "SubnetMask"), "255.0.0.0");
}

TEST_F(RegistryPosix, NamesAreGivenOnce) {
    os::Registry::Key key = open(tree, os::registry_enumerate);
    std::map<std::string, int> count;
    for (std::uint32_t n = 0; name_of(key, n) != ""; ++n) EXPECT_EQ(++count[name_of(key, n)], 1);
    EXPECT_FALSE(count.empty());
    char name[260];
    std::uint32_t size = 259;
    EXPECT_EQ(registry.enumerate_key(key, static_cast<std::uint32_t>(count.size()), name, size),
              os::registry_no_more_keys);
    size = 1;
    EXPECT_EQ(registry.enumerate_key(key, 0, name, size), os::registry_more_data);
}

TEST_F(RegistryPosix, TheFrequencyIsOneWhereAcknowledgementsCanLeaveAtOnce) {
    os::Registry::Key key = open(tree + "\\" + name_of_adapter("127.0.0.1"), os::registry_read);
    std::uint32_t type = 0;
    std::uint32_t value = 0;
    std::uint32_t size = sizeof value;
    const long error = registry.query_value(key, "TcpAckFrequency", type, &value, size);
    if (!os::socket_can_acknowledge()) {
        EXPECT_EQ(error, os::registry_no_value);
        return;
    }
    EXPECT_EQ(error, os::registry_done);
    EXPECT_EQ(type, os::registry_dword);
    EXPECT_EQ(size, sizeof value);
    EXPECT_EQ(value, 1U);
}

TEST_F(RegistryPosix, WhatIsNotThereIsError2) {
    os::Registry::Key key = nullptr;
    EXPECT_EQ(registry.open_key("SYSTEM", os::registry_read, key), os::registry_no_value);
    EXPECT_EQ(registry.open_key((tree + "\\no such adapter").c_str(), os::registry_read, key),
              os::registry_no_value);
    EXPECT_EQ(registry.open_key((tree + "x").c_str(), os::registry_read, key), os::registry_no_value);
    EXPECT_EQ(key, nullptr);
    std::uint32_t type = 0;
    std::uint32_t value = 0;
    std::uint32_t size = sizeof value;
    key = open(tree + "\\" + name_of_adapter("127.0.0.1"), os::registry_read);
    EXPECT_EQ(registry.query_value(key, "TcpDelAckTicks", type, &value, size), os::registry_no_value);
    EXPECT_EQ(registry.query_value(key, "IPAddress", type, &value, size), os::registry_more_data);
    EXPECT_EQ(type, os::registry_string);
    EXPECT_EQ(size, std::strlen("127.0.0.1") + 1);
}

TEST_F(RegistryPosix, NothingCanBeWritten) {
    const std::string path = tree + "\\" + name_of_adapter("127.0.0.1");
    os::Registry::Key key = nullptr;
    EXPECT_EQ(registry.open_key(path.c_str(), os::registry_read_write, key), os::registry_no_access);
    EXPECT_EQ(registry.set_dword(open(path, os::registry_read), "TcpAckFrequency", 1),
              os::registry_no_access);
}

}  // namespace
