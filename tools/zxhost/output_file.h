// A file that a verb leaves behind.
#pragma once

#include <fstream>
#include <string>

namespace zxhost {

// A new, empty file to write to. Throws HostError (wrong usage) if it can't be made.
std::ofstream open_output(const std::string& file);

// Makes the directory if need be. Throws HostError (wrong usage).
void make_output_directory(const std::string& directory);

// Throws HostError (wrong usage) if something written to the file got lost.
void close_output(std::ofstream& out, const std::string& file);

}  // namespace zxhost
