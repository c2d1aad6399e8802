#include "clang_output.h"

#include <array>
#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace {

// What a command wrote; its errors are part of it.
std::string output_of(const std::string& command) {
    FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) throw std::runtime_error("can't start " + command);
    std::string output;
    std::array<char, 4096> piece{};
    while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), pipe)) {
        output.append(piece.data(), size);
    }
    if (pclose(pipe) != 0) throw std::runtime_error(command + "\n" + output);
    return output;
}

// Where clang finds this system's standard library. It forgets them for another system's target.
std::string system_folders() {
    std::istringstream lines(output_of(CLANG " -x c++ -E -v /dev/null"));
    std::string options;
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("End of search list")) inside = false;
        if (inside) options += " -isystem" + line;
        if (line.starts_with("#include <...>")) inside = true;
    }
    return options;
}

// This system's headers cast pointers to a type that is smaller elsewhere: an extension lets them.
std::string options_for(Abi abi) {
    if (abi == Abi::linux_itanium) return "";
    const std::string target = abi == Abi::mingw ? "x86_64-w64-windows-gnu" : "x86_64-pc-windows-msvc";
    return " --target=" + target +
           " -fms-extensions -fno-ms-compatibility -U__SIZEOF_INT128__ -D_GNU_SOURCE"
           " -nostdinc -isystem " BOUNDARY_FOLDER "/windows" +
           system_folders();
}

}  // namespace

std::string clang_output(Abi abi, const std::string& words) {
    return output_of(CLANG " -std=c++20 -w" + options_for(abi) + " @" INCLUDE_OPTIONS " " + words);
}
