// The system's own registry, below a key of this test that stands for HKEY_LOCAL_MACHINE.
#include <gtest/gtest.h>

#include <cstring>

#include "local_machine_key.h"
#include "os/registry.h"

namespace {

class RegistryWin32 : public testing::Test {
protected:
    ~RegistryWin32() override {
        if (key) registry.close_key(key);
    }

    long open(const char* path, std::uint32_t access) {
        if (key) registry.close_key(key);
        key = nullptr;
        return registry.open_key(path, access, key);
    }

    LocalMachineKey local_machine;
    os::Registry& registry = os::system_registry();
    os::Registry::Key key = nullptr;
};

TEST_F(RegistryWin32, SubkeysAreToldByNumber) {
    local_machine.make("tree\\{first}");
    local_machine.make("tree\\{second}");
    ASSERT_EQ(open("tree", os::registry_enumerate), os::registry_done);
    char name[260] = "";
    std::uint32_t size = 259;
    EXPECT_EQ(registry.enumerate_key(key, 0, name, size), os::registry_done);
    EXPECT_STREQ(name, "{first}");
    EXPECT_EQ(size, std::strlen("{first}"));
    size = 259;
    EXPECT_EQ(registry.enumerate_key(key, 1, name, size), os::registry_done);
    EXPECT_STREQ(name, "{second}");
    size = 259;
    EXPECT_EQ(registry.enumerate_key(key, 2, name, size), os::registry_no_more_keys);
    size = 1;
    EXPECT_EQ(registry.enumerate_key(key, 0, name, size), os::registry_more_data);
}

TEST_F(RegistryWin32, ANameOf255BytesFits) {
    local_machine.make("tree\\" + std::string(255, 'n'));
    ASSERT_EQ(open("tree", os::registry_enumerate), os::registry_done);
    char name[260] = "";
    std::uint32_t size = 259;
    EXPECT_EQ(registry.enumerate_key(key, 0, name, size), os::registry_done);
    EXPECT_EQ(size, 255U);
}

TEST_F(RegistryWin32, ValuesComeWithTypeAndSize) {
    local_machine.set_text("a", "text", "10.0.0.1");
    local_machine.set_texts("a", "texts", {"10.0.0.1", "10.0.0.2"});
    local_machine.set_dword("a", "number", 0x80000001U);
    ASSERT_EQ(open("a", os::registry_read), os::registry_done);
    char text[260] = "";
    std::uint32_t size = 259;
    std::uint32_t type = 0;
    EXPECT_EQ(registry.query_value(key, "text", type, text, size), os::registry_done);
    EXPECT_STREQ(text, "10.0.0.1");
    EXPECT_EQ(type, os::registry_string);
    EXPECT_EQ(size, 9U);
    size = 259;
    EXPECT_EQ(registry.query_value(key, "texts", type, text, size), os::registry_done);
    EXPECT_STREQ(text, "10.0.0.1");
    EXPECT_EQ(type, os::registry_strings);
    EXPECT_EQ(size, 19U);
    std::uint32_t number = 0;
    size = sizeof number;
    EXPECT_EQ(registry.query_value(key, "number", type, &number, size), os::registry_done);
    EXPECT_EQ(type, os::registry_dword);
    EXPECT_EQ(number, 0x80000001U);
    size = sizeof number;
    EXPECT_EQ(registry.query_value(key, "text", type, &number, size), os::registry_more_data);
    EXPECT_EQ(type, os::registry_string);
    EXPECT_EQ(size, 9U);
    EXPECT_EQ(registry.query_value(key, "none", type, &number, size), os::registry_no_value);
}

TEST_F(RegistryWin32, OnlyAKeyForWritingIsWritten) {
    local_machine.make("a");
    ASSERT_EQ(open("a", os::registry_read), os::registry_done);
    EXPECT_EQ(registry.set_dword(key, "number", 7), os::registry_no_access);
    ASSERT_EQ(open("a", os::registry_read_write), os::registry_done);
    EXPECT_EQ(registry.set_dword(key, "number", 7), os::registry_done);
    std::uint32_t number = 0;
    std::uint32_t size = sizeof number;
    std::uint32_t type = 0;
    EXPECT_EQ(registry.query_value(key, "number", type, &number, size), os::registry_done);
    EXPECT_EQ(number, 7U);
}

TEST_F(RegistryWin32, AKeyForTheListOfSubkeysGivesNoValues) {
    local_machine.set_dword("a", "number", 7);
    ASSERT_EQ(open("a", os::registry_enumerate), os::registry_done);
    std::uint32_t number = 0;
    std::uint32_t size = sizeof number;
    std::uint32_t type = 0;
    EXPECT_EQ(registry.query_value(key, "number", type, &number, size), os::registry_no_access);
}

}  // namespace
