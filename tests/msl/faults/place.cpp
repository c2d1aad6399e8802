#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <map>
#include <regex>

#include "operations.h"
#include "os/error.h"
#include "os/file.h"

namespace faults {
namespace {

constexpr std::size_t longest_shown = 30;

const std::map<std::string, std::string>& prepared() {
    static const std::map<std::string, std::string> files{
        {"file", "old\r\n"}, {"big", std::string(8191, 'x') + "\r\nshort\rlast"},
        {"empty", ""},       {"x.ini", "[s]\r\na=1\r\n"},
        {"sub/in", "in"},
    };
    return files;
}

std::string shown(const std::string& content) {
    if (content.size() > longest_shown) return std::to_string(content.size());
    std::string text = "\"";
    for (const char c : content) {
        if (c == '\r' || c == '\n') {
            text += c == '\r' ? "\\r" : "\\n";
        } else {
            text += c == '\0' ? "\\0" : std::string(1, c);
        }
    }
    return text + '"';
}

// The system's number for a file that is not open.
std::string closed_file_error() {
    char byte = 0;
    std::uint32_t done = 0;
    os::files().read(os::no_file, &byte, 1, done);
    return std::to_string(os::last_error());
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != text.npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

}  // namespace

Place::Place() : m_closed_file_error(closed_file_error()) {
    std::filesystem::create_directory(path("sub"));
    for (const auto& [name, content] : prepared()) m_directory.file(name, content);
}

std::string Place::changes() const {
    std::map<std::string, std::string> now;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path())) {
        const std::string name = std::filesystem::relative(entry.path(), path()).generic_string();
        if (entry.is_regular_file()) now[name] = m_directory.content(name);
    }
    std::string text;
    for (const auto& [name, content] : prepared()) {
        if (!now.contains(name)) text += " no " + name;
    }
    for (const auto& [name, content] : now) {
        const auto before = prepared().find(name);
        if (before != prepared().end() && before->second == content) continue;
        text += " " + plain(name) + "=" + shown(content);
    }
    return text;
}

bool Place::has_leftovers() const { return changes().find("TMP") != std::string::npos; }

std::string Place::plain(std::string text) const {
    // A full path comes back with the other separator.
    std::string with_backslashes = path();
    for (char& c : with_backslashes) c = c == '/' ? '\\' : c;
    for (const std::string& name : {path(), with_backslashes}) text = replaced(text, name, "D");
    // Where a report cuts the path, it depends on the directory what is left of the name.
    text = std::regex_replace(text, std::regex("(MIniData::(Save|MIniData)\\(\\): [A-Za-z_]*)\\(\"[^\"]*"),
                              "$1(\"D/...");
    text = replaced(text, os::error_text(EIO), "Input/output error");
    text = replaced(text, "ReadFile() failed: " + m_closed_file_error, "ReadFile() failed: 9");
    text = std::regex_replace(text, std::regex("ffw[0-9A-Fa-f]*\\.tmp"), "TMP");
    return replaced(text, "D\\TMP", "D/TMP");
}

}  // namespace faults
