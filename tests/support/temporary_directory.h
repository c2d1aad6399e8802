// A directory of a test's own, gone with everything in it when the object goes.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

class TemporaryDirectory {
public:
    TemporaryDirectory() {
        // A name that no other process uses, nor ever did: another may be about to remove its directory.
        std::random_device random;
        const std::string start = (std::filesystem::temp_directory_path() / "zx_test_").string();
        do m_path = start + std::to_string(random()) + "_" + std::to_string(random());
        while (!std::filesystem::create_directory(m_path));
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    // The path of an entry of this name; empty stands for the directory itself.
    std::string path(const std::string& name = "") const {
        return name.empty() ? m_path : m_path + "/" + name;
    }

    // Makes a file with this content and returns its path.
    std::string file(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }

    std::string content(const std::string& name) const {
        std::ifstream in(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

private:
    std::string m_path;
};
