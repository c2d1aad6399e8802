// zxhost with a plug-in that can't be used.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "zxhost_programs.h"

namespace zxhost_test {

class PluginFiles : public ::testing::Test {
protected:
    // Standard error is one line with all of these, and one that tells the way out.
    void expect_refusal(const std::string& plugin, const Words& says) const {
        const ProcessResult result = host.run({"--plugin", plugin, "info"});
        EXPECT_EQ(result.exit_status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 2) << result.err;
        const std::string line = result.err.substr(0, result.err.find('\n'));
        for (const std::string& text : says)
            EXPECT_NE(line.find(text), std::string::npos) << text << " in: " << result.err;
        EXPECT_NE(result.err.find("--plugin FILE"), std::string::npos) << result.err;
    }

    // A copy of a library, away from those that it needs.
    std::string lonely(const std::string& library) const {
        const std::string copy = host.directory.path(std::filesystem::path(library).filename().string());
        std::filesystem::copy_file(library, copy);
        return copy;
    }

    const std::string wanted = "; wanted is a 64-bit x86-64 library for " ZX_SYSTEM;
    Host host;
};

}  // namespace zxhost_test
