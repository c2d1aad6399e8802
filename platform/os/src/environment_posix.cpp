#include <cstdlib>
#include <cstring>

#include "os/environment.h"

namespace os {

bool get_variable(const char* name, std::string& value) {
    const char* const found = std::getenv(name);
    if (!found) return false;
    value = found;
    return true;
}

namespace {

// The text between two percent signs, replaced if it names a variable.
std::string expand_pair(const std::string& name) {
    std::string value;
    if (!name.empty() && get_variable(name.c_str(), value)) return value;
    return '%' + name + '%';
}

std::string expand(const std::string& text) {
    std::string out;
    std::size_t at = 0;
    while (true) {
        const std::size_t first = text.find('%', at);
        const std::size_t second = first == text.npos ? text.npos : text.find('%', first + 1);
        if (second == text.npos) return out.append(text, at);
        out.append(text, at, first - at);
        out += expand_pair(text.substr(first + 1, second - first - 1));
        at = second + 1;
    }
}

}  // namespace

std::size_t expand_variables(const char* text, char* target, std::size_t size) {
    const std::string out = expand(text);
    if (out.size() < size) std::memcpy(target, out.c_str(), out.size() + 1);
    return out.size() + 1;
}

}  // namespace os
