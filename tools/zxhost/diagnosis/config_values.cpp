#include "config_values.h"

#include <fmt/format.h>

#include <algorithm>

#include "configfile.h"
#include "defaultaddress.h"
#include "errtrace.h"
#include "menvironment.h"
#include "numbers.h"
#include "stl_utilities.h"

namespace zxhost {
namespace {

constexpr const char* white = " \t\n\v\f\r";

bool holds(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

// The text between the first two percent signs; empty if there aren't two.
std::string variable_in(const std::string& text) {
    const std::size_t first = text.find('%');
    const std::size_t second = first == text.npos ? text.npos : text.find('%', first + 1);
    return second == text.npos ? "" : text.substr(first + 1, second - first - 1);
}

class Explainer {
public:
    explicit Explainer(std::vector<ConfigValue>& values) : m_values(values) {}

    std::vector<ValueNote> run() {
        for (ConfigValue& value : m_values) tell_comment(value);
        host(m_values[0]);
        port(m_values[1], m_values[0]);
        cached_axes(m_values[2]);
        return std::move(m_notes);
    }

private:
    static bool is_written(const ConfigValue& value) { return !value.file.empty(); }

    static void tell_comment(ConfigValue& value) {
        std::string rest = value.written;
        stl_string_strip_comment(rest);
        value.lost = value.written.substr(rest.size());
    }

    void host(ConfigValue& host) {
        host.value = default_host;
        if (!is_written(host)) return;
        host.value = host.written;
        configfile::strip_host(host.value);
        if (configfile::is_library(host.written))
            library(host);
        else
            tell_inner_blanks(host);
        if (host.value.empty())
            note(host, holds(host.lost, "//") ? "two slashes begin a comment, so nothing is left of the host"
                                              : "the host is empty");
        else if (!configfile::is_library(host.value) && holds(host.value, "COM"))
            note(host, "\"COM\" in it makes it a serial line, and the port doesn't count");
    }

    void library(ConfigValue& host) {
        if (!configfile::is_library(host.value))
            note(host, "\".dll\" in its comment has it read as the path of a library: blanks inside stay");
        const MErrTraceContext context("config_values.cpp");
        if (!MReplaceEnvironmentVars(host.value)) note(host, "its variables can't be replaced");
        if (const std::string name = variable_in(host.value); !name.empty())
            note(host, fmt::format("there is no variable {}, so it stays as it stands", name));
    }

    void port(ConfigValue& port, const ConfigValue& host) {
        port.value = default_port;
        if (!is_written(port)) return;
        port.value = port.written;
        stl_string_strip(port.value);
        tell_inner_blanks(port);
        std::int64_t number = 0;
        if (!wire::parse_integer(port.value, 1, 65535, number))
            note(port, fmt::format("\"{}\" is no port: give a number from 1 to 65535", port.value));
        else if (configfile::is_library(host.value))
            note(port, "the host is a library, so the port doesn't count");
    }

    void cached_axes(ConfigValue& axes) {
        if (!is_written(axes)) return;
        std::vector<std::string> names = configfile::axes_of(axes.written);
        stl_string_join(axes.value, ",", names);
        if (names.empty()) note(axes, "it names no axis");
        for (const std::string& name : names)
            if (std::count(names.begin(), names.end(), name) > 1) {
                note(axes, fmt::format("it names {} more than once", name));
                break;
            }
    }

    // White space goes, also between the parts of a value.
    void tell_inner_blanks(const ConfigValue& value) {
        std::string text = value.written.substr(0, value.written.size() - value.lost.size());
        text.erase(0, text.find_first_not_of(white));
        text.erase(text.find_last_not_of(white) + 1);
        if (text.find_first_of(white) == text.npos) return;
        note(value, fmt::format("\"{}\" is read without its blanks: \"{}\"", text, value.value));
    }

    void note(const ConfigValue& value, const std::string& text) {
        m_notes.push_back({&value, value.key + std::string(": ") + text});
    }

    std::vector<ConfigValue>& m_values;
    std::vector<ValueNote> m_notes;
};

}  // namespace

std::vector<ValueNote> explain_values(std::vector<ConfigValue>& values) { return Explainer(values).run(); }

}  // namespace zxhost
