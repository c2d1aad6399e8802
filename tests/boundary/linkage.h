// What a shared library offers and needs, read from its file.
#pragma once

#include <set>
#include <string>

using Names = std::set<std::string>;

// Throw std::runtime_error if the file can't be read.
Names exported_names(const std::string& file);
Names needed_libraries(const std::string& file);  // file names, in lower case on Windows
