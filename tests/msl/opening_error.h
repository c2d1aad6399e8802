// The system's own number for a file that it does not open.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "os/error.h"
#include "os/file.h"

inline std::string opening_error(const std::string& path, os::OpenMode mode) {
    EXPECT_EQ(os::no_file, os::files().open(path.c_str(), mode, false));
    return std::to_string(os::last_error());
}
