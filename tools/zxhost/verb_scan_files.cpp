#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>

#include "exit_status.h"
#include "scan_points.h"
#include "scan_results.h"
#include "verb_host.h"
#include "verbs.h"

namespace zxhost {
namespace {

struct FileOptions {
    std::string file;
    ScanResults results;
};

using RunOnFile = std::function<void(const Settings&, const Streams&, const FileOptions&)>;

void verify(const Settings& settings, const Streams& streams, const FileOptions& options) {
    const ScanVerdict verdict = verify_scan(options.file);
    const Json row{{"file", options.file},     {"state", word_of(verdict.state)},
                   {"points", verdict.points}, {"line", verdict.line},
                   {"byte", verdict.byte},     {"why", verdict.why}};
    if (settings.format == Format::AsJson)
        write_json(streams.out, row);
    else
        write_table(
            streams.out,
            {{"state", "state"}, {"points", "points"}, {"line", "line"}, {"byte", "byte"}, {"file", "file"}},
            Json::array({row}));
    if (verdict.state == ScanState::Cut)
        throw HostError(ExitStatus::MachineError, verdict_text(options.file, verdict),
                        "the points before are good: zxhost scan fit, picture and export take them");
    refuse_damaged(verdict, options.file);
}

void results(const Settings& settings, const Streams& streams, const FileOptions& options) {
    if (options.results.ply.empty() && options.results.xyz.empty() && options.results.picture.empty() &&
        options.results.shape.empty())
        throw HostError(ExitStatus::WrongUsage, "there is nothing to write",
                        "name a file with --ply FILE or --xyz FILE");
    const Json result = make_results(options.file, options.results, streams.err);
    if (settings.format == Format::AsJson)
        write_json(streams.out, result);
    else
        write_results(streams.out, result);
}

struct FileVerb {
    const char* name;
    const char* description;
    const char* example;
    void (*add_options)(CLI::App& verb, ScanResults& results);
    RunOnFile run;
};

void add_file_verb(CLI::App& scan, Program& program, const FileVerb& verb) {
    const auto options = std::make_shared<FileOptions>();
    CLI::App* const part = scan.add_subcommand(verb.name, verb.description);
    part->add_option("FILE", options->file, "scan file, as zxhost scan --csv FILE writes it")->required();
    verb.add_options(*part, options->results);
    part->footer(std::string("example: ") + verb.example);
    part->callback([&program, options, run = verb.run] {
        program.verb = [&program, options, run](const Streams& streams) {
            if (!program.settings.rehearsal) run(program.settings, streams, *options);
        };
    });
}

void no_options(CLI::App&, ScanResults&) {}

void export_options(CLI::App& verb, ScanResults& results) {
    add_export_options(verb, results);
    add_axes_option(verb, results);
}

void picture_options(CLI::App& verb, ScanResults& results) {
    verb.add_option("--out", results.picture, "SVG file to write")->required();
    add_axes_option(verb, results);
}

void fit_options(CLI::App& verb, ScanResults& results) {
    verb.add_option("--shape", results.shape, "line, circle, plane or sphere")->required();
    verb.add_option("--picture", results.picture, "SVG file for a picture of the deviations");
    verb.add_option("--deviations", results.deviations, "CSV file for the deviation of each point");
    add_axes_option(verb, results);
}

}  // namespace

void add_scan_files(CLI::App& scan, Program& program) {
    const FileVerb verbs[] = {
        {"verify", "Say whether a scan file is whole or cut, and where", "zxhost scan verify ring.csv",
         no_options, verify},
        {"export", "Write a scan file's points in other forms",
         "zxhost scan export ring.csv --ply ring.ply --xyz ring.xyz", export_options, results},
        {"picture", "Draw the points over any pair of a scan file's columns",
         "zxhost scan picture ring.csv --axes time,z --out z.svg", picture_options, results},
        {"fit", "Fit a shape to a scan file's points, and tell how far they lie from it",
         "zxhost scan fit ring.csv --shape circle --axes x,y --picture ring.svg", fit_options, results}};
    for (const FileVerb& verb : verbs) add_file_verb(scan, program, verb);
}

}  // namespace zxhost
