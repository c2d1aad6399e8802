// A key of the current user that stands for HKEY_LOCAL_MACHINE in this process, as long as this lives, and
// takes with it what was written below. Windows.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// Keys with their values, below a key of the system.
class RegistryKeys {
public:
    explicit RegistryKeys(HKEY root) : m_root(root) {}

    bool has(const std::string& path) const {
        HKEY key = nullptr;
        if (::RegOpenKeyExA(m_root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
        close(key);
        return true;
    }
    void make(const std::string& path) { close(create(path)); }
    void set_text(const std::string& path, const char* name, const std::string& text) {
        set(path, name, REG_SZ, text.c_str(), text.size() + 1);
    }
    void set_texts(const std::string& path, const char* name, const std::vector<std::string>& texts) {
        std::string all;
        for (const std::string& text : texts) all += text + '\0';
        set(path, name, REG_MULTI_SZ, all.c_str(), all.size() + 1);
    }
    void set_dword(const std::string& path, const char* name, std::uint32_t number) {
        set(path, name, REG_DWORD, &number, sizeof number);
    }
    // With everything below.
    void remove(const std::string& path) { EXPECT_EQ(::RegDeleteTreeA(m_root, path.c_str()), ERROR_SUCCESS); }

    HKEY create(const std::string& path) {
        HKEY key = nullptr;
        EXPECT_EQ(
            ::RegCreateKeyExA(m_root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
            ERROR_SUCCESS)
            << path;
        return key;
    }

private:
    static void close(HKEY key) { ::RegCloseKey(key); }

    void set(const std::string& path, const char* name, DWORD type, const void* data, std::size_t size) {
        const HKEY key = create(path);
        EXPECT_EQ(
            ::RegSetValueExA(key, name, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size)),
            ERROR_SUCCESS)
            << name;
        close(key);
    }

    HKEY m_root;
};

class LocalMachineKey : public RegistryKeys {
public:
    LocalMachineKey() : LocalMachineKey("Software\\zx_test_" + std::to_string(::GetCurrentProcessId())) {}
    ~LocalMachineKey() {
        ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        ::RegCloseKey(m_key);
        RegistryKeys(HKEY_CURRENT_USER).remove(m_path);
    }
    LocalMachineKey(const LocalMachineKey&) = delete;
    LocalMachineKey& operator=(const LocalMachineKey&) = delete;

private:
    explicit LocalMachineKey(std::string path)
        : RegistryKeys(HKEY_LOCAL_MACHINE),
          m_path(std::move(path)),
          m_key(RegistryKeys(HKEY_CURRENT_USER).create(m_path)) {
        EXPECT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, m_key), ERROR_SUCCESS);
    }

    std::string m_path;
    HKEY m_key;
};
