// Files in a directory of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <system_error>
#include <vector>

#include "os/error.h"
#include "os/file.h"
#include "temporary_directory.h"

class FileTest : public ::testing::Test {
protected:
    std::string path(const std::string& name) const { return m_directory.path(name); }

    // Opens, writes the text and closes.
    void write(const std::string& name, os::OpenMode mode, const std::string& text) {
        const os::FileHandle file = m_files.open(path(name).c_str(), mode, false);
        ASSERT_NE(os::no_file, file) << os::error_text(os::last_error());
        std::uint32_t done = 0;
        EXPECT_TRUE(m_files.write(file, text.data(), static_cast<std::uint32_t>(text.size()), done));
        EXPECT_EQ(text.size(), done);
        EXPECT_TRUE(m_files.flush(file));
        EXPECT_TRUE(m_files.close(file));
    }

    std::vector<std::string> names(const std::string& pattern) {
        std::vector<os::DirectoryEntry> found;
        std::vector<std::string> out;
        if (!m_files.find(path(pattern).c_str(), found)) return out;
        for (const auto& entry : found) out.push_back(entry.name);
        return out;
    }

    static bool failed_with(std::errc kind) {
        return std::error_code(os::last_error(), std::system_category()) == kind;
    }

    TemporaryDirectory m_directory;
    os::FileSystem& m_files = os::files();
};

using Names = std::vector<std::string>;
