#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "config_report.h"
#include "exit_status.h"
#include "list_verb.h"
#include "number_text.h"
#include "table.h"
#include "verb_host.h"

namespace zxhost {
namespace {

std::string place_of(const std::string& file, std::size_t line) {
    return line == 0 ? file : fmt::format("{}:{}", file, line);
}

Json value_row(const ConfigValue& value) {
    const bool is_written = !value.file.empty();
    return {{"section", value.section},
            {"key", value.key},
            {"value", value.value},
            {"from", is_written ? "file" : "default"},
            {"file", is_written ? Json(value.file) : Json()},
            {"line", is_written ? Json(value.line) : Json()},
            {"written", is_written ? Json(value.written) : Json()},
            {"lost", value.lost}};
}

const char* name_of(FindingKind kind) {
    switch (kind) {
        case FindingKind::unreadable:
            return "unreadable";
        case FindingKind::shadowed:
            return "shadowed";
        case FindingKind::near_miss:
            return "near miss";
        case FindingKind::unknown:
            return "unknown";
        case FindingKind::value:
            break;
    }
    return "value";
}

Json document_of(const ConfigReport& report) {
    Json files = Json::array(), values = Json::array(), findings = Json::array();
    for (const LookedAt& look : report.looked_at)
        files.push_back({{"file", look.file}, {"state", look.state}});
    for (const ConfigValue& value : report.values) values.push_back(value_row(value));
    for (const Finding& finding : report.findings)
        findings.push_back({{"kind", name_of(finding.kind)},
                            {"file", finding.file},
                            {"line", finding.line ? Json(finding.line) : Json()},
                            {"text", finding.text}});
    return {{"files", files}, {"values", values}, {"findings", findings}};
}

void write_report(std::ostream& out, const ConfigReport& report) {
    const Json document = document_of(report);
    write_table(out, {{"file", "file"}, {"state", "state"}}, document["files"]);
    Json rows = Json::array();
    for (const ConfigValue& value : report.values)
        rows.push_back({{"key", fmt::format("[{}] {}", value.section, value.key)},
                        {"value", value.value.empty() ? "(empty)" : value.value},
                        {"from", value.file.empty() ? "default" : place_of(value.file, value.line)},
                        {"lost", value.lost.empty() ? Json() : Json(value.lost)}});
    out << "\n";
    write_table(out, {{"key", "key"}, {"value", "value"}, {"from", "from"}, {"lost", "comment"}}, rows);
    if (!report.findings.empty()) out << "\n";
    for (const Finding& finding : report.findings)
        out << printable(place_of(finding.file, finding.line) + ": " + finding.text) << "\n";
}

void config(const Settings& settings, const Streams& streams, const std::vector<std::string>&) {
    if (!settings.host.empty())
        throw HostError(ExitStatus::WrongUsage, "--host takes the place of the configuration",
                        "leave it out, and name a configuration with --config DIR --name NAME");
    const ConfigReport report = read_config(settings.config, settings.name);
    if (settings.format == Format::AsJson)
        write_json(streams.out, document_of(report));
    else
        write_report(streams.out, report);
    if (report.findings.empty()) return;
    const std::size_t count = report.findings.size();
    throw HostError(ExitStatus::MachineError,
                    fmt::format("config: {} {} to look at", count, count == 1 ? "thing" : "things"),
                    "the driver says nothing of this by itself");
}

}  // namespace

void add_config(CLI::App& app, Program& program) {
    add_list_verb(
        app, program,
        {.name = "config",
         .description = "Show the driver's configuration: each value, where it comes from, and what "
                        "is in its file for nothing",
         .example = "zxhost --config /etc/machines --name lab config\n"
                    "         zxhost --config . --format json config"},
        config);
}

}  // namespace zxhost
