// Files of shared libraries, read without loading them: what they are, what they need and what they offer.
//
// A file that can't be read, or is no such thing, is told as one or answers with nothing.
#pragma once

#include <string>
#include <vector>

namespace os {

struct ImageKind {
    std::string system;   // "Windows", "Linux"; empty for a file that is no library
    std::string machine;  // "64-bit x86-64"
    std::string text;     // "a 32-bit x86 library for Windows", "an empty file"

    bool runs_with(const ImageKind& other) const {
        return system == other.system && machine == other.machine;
    }
};

ImageKind image_kind(const std::string& file);

// What a library for Windows takes from another one.
struct ImageImport {
    std::string library;             // its file's name
    std::vector<std::string> names;  // functions and data; those known by number alone are left out
};

std::vector<ImageImport> image_imports(const std::string& file);

// The names that a library for Windows offers.
std::vector<std::string> image_exports(const std::string& file);

}  // namespace os
