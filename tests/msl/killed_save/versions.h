// Two contents of one ini file, both larger than any buffer on their way.
#pragma once

#include <string>

inline std::string version_of_file(int number) {
    std::string text = "[s]\n";
    for (int i = 0; i < 4000; ++i) {
        text += "entry" + std::to_string(i) + "=" + std::to_string(number) + " of the version\n";
    }
    return text;
}
