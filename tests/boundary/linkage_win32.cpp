#include <algorithm>
#include <stdexcept>

#include "image.h"
#include "linkage.h"

Names exported_names(const std::string& file) {
    const std::vector<std::string> names = os::image_exports(file);
    if (names.empty()) throw std::runtime_error(file + " exports nothing");
    return {names.begin(), names.end()};
}

Names needed_libraries(const std::string& file) {
    Names names;
    for (const os::ImageImport& import : os::image_imports(file)) {
        std::string name = import.library;
        std::transform(name.begin(), name.end(), name.begin(),
                       [](char c) { return 'A' <= c && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
        names.insert(name);
    }
    if (names.empty()) throw std::runtime_error(file + " imports nothing");
    return names;
}
