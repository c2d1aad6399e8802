// zxhost run: a script of shell lines.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

#include "interrupt.h"
#include "number_text.h"
#include "open_machine.h"
#include "script.h"
#include "verb_host.h"
#include "verbs.h"

namespace zxhost {
namespace {

struct RunOptions {
    std::string file;
    bool check = false;
};

Json rows(const ScriptReport& report, bool wrong) {
    Json result = Json::array();
    for (const LineRemark& each : report.remarks) {
        if (each.remark.is_wrong != wrong) continue;
        Json row{{"line", each.line}, {"text", each.remark.text}};
        if (wrong) row["way_out"] = each.remark.way_out;
        result.push_back(std::move(row));
    }
    return result;
}

void write_report(std::ostream& out, const std::string& file, const ScriptReport& report) {
    for (const LineRemark& each : report.remarks) {
        out << printable(file) << ":" << each.line << ": " << (each.remark.is_wrong ? "" : "not known: ")
            << printable(each.remark.text) << "\n";
        if (!each.remark.way_out.empty()) out << "        " << each.remark.way_out << "\n";
    }
    const std::size_t wrong = rows(report, true).size();
    out << printable(file) << ": " << report.lines << " lines to run, " << wrong << " wrong";
    if (const std::size_t unknown = report.remarks.size() - wrong)
        out << ", " << unknown << (unknown == 1 ? " thing" : " things") << " that only the run will tell";
    out << "\n";
}

void show_report(const Settings& settings, std::ostream& out, const std::string& file,
                 const ScriptReport& report) {
    if (settings.format == Format::AsJson)
        write_json(out, {{"file", file},
                         {"lines", report.lines},
                         {"wrong", rows(report, true)},
                         {"unknown", rows(report, false)}});
    else
        write_report(out, file, report);
    out.flush();
    const auto first = std::find_if(report.remarks.begin(), report.remarks.end(),
                                    [](const LineRemark& each) { return each.remark.is_wrong; });
    if (first != report.remarks.end())
        throw HostError::told_already(first->status, file + ": there are wrong lines");
}

// A script within one that is examined: its remarks become those of the line that plays it.
void examine_inside(const std::string& file, const Settings& settings) {
    for (LineRemark& each : check_script(file, settings).remarks) {
        each.remark.text = file + ":" + std::to_string(each.line) + ": " + each.remark.text;
        settings.rehearsal->add(std::move(each.remark));
    }
}

void check(const std::string& file, const Settings& settings, const Streams& streams) {
    Rehearsal rehearsal(settings.borrow().machine());
    Settings examined = settings;
    examined.rehearsal = &rehearsal;
    show_report(settings, streams.out, file, check_script(file, examined));
}

void run(const Program& program, const Streams& streams, const RunOptions& options) {
    Settings settings = program.settings;
    if (settings.rehearsal) return examine_inside(options.file, settings);
    const InterruptMemory memory;
    std::unique_ptr<OpenMachine> own;
    if (!settings.borrow)
        settings.borrow = [&]() -> OpenMachine& {
            if (!own) own = std::make_unique<OpenMachine>(program.settings);
            return *own;
        };
    if (options.check)
        check(options.file, settings, streams);
    else
        play_script(options.file, settings, streams);
}

}  // namespace

void add_run(CLI::App& app, Program& program) {
    const auto options = std::make_shared<RunOptions>();
    CLI::App* const verb = app.add_subcommand("run", "Play a script of shell lines, up to the first error");
    verb->add_option("FILE", options->file, "a file with one verb on each line; # begins a comment")
        ->required();
    verb->add_flag("--check", options->check,
                   "hold each line against what the machine can, and move nothing");
    verb->footer("example: zxhost run --check part.zx");
    verb->callback([&program, options] {
        program.verb = [&program, options](const Streams& streams) { run(program, streams, *options); };
    });
}

}  // namespace zxhost
