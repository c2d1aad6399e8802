// As long as the object lives, files of a moment go to a directory of the test's own.
#pragma once

#include <string>

#include "environment_variable.h"
#include "temporary_directory.h"

class PrivateTemporary {
public:
    std::string path(const std::string& name) const { return m_directory.path(name); }

private:
    TemporaryDirectory m_directory;
    // As the one and the other system call it.
    EnvironmentVariable m_tmpdir{"TMPDIR", m_directory.path().c_str()};
    EnvironmentVariable m_tmp{"TMP", m_directory.path().c_str()};
};
