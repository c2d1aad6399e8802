#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <sstream>

#include "number_text.h"
#include "verb_host.h"
#include "verbs.h"

namespace zxhost {
namespace {

void add_connection_settings(CLI::App& app, Settings& settings) {
    CLI::Option* const host =
        app.add_option("--host", settings.host, "name or address of the machine (default: the driver's own)");
    app.add_option("--port", settings.port, "its port")
        ->check(CLI::Range(1, 65535))
        ->capture_default_str()
        ->needs(host);
    CLI::Option* const config =
        app.add_option("--config", settings.config, "configuration directory, in place of --host and --port")
            ->check(CLI::ExistingDirectory)
            ->excludes(host);
    app.add_option("--name", settings.name, "configuration name")->capture_default_str()->needs(config);
    app.add_option("--plugin", settings.plugin, "file of the plug-in (default: the one beside this program)");
    app.add_option("--trace", settings.trace, "trace level of the driver, 0 to 5")->check(CLI::Range(0, 5));
}

void add_output_settings(CLI::App& app, Settings& settings) {
    const std::map<std::string, Format> formats{{"table", Format::AsTable}, {"json", Format::AsJson}};
    app.add_option("--format", settings.format, "table or json")
        ->transform(CLI::CheckedTransformer(formats).description(""))
        ->option_text("table|json");
    app.add_flag("--progress", settings.progress, "show progress also where no terminal is");
    app.add_flag("--lines", settings.lines, "show each line of the machine on standard error");
}

void let_options_stand_anywhere(CLI::App& app) {
    app.require_subcommand(1);
    app.fallthrough();
    for (CLI::App* verb : app.get_subcommands({})) {
        verb->fallthrough();
        for (CLI::App* part : verb->get_subcommands({})) part->fallthrough();
    }
}

void tell(const Streams& streams, const std::string& text, const std::string& way_out) {
    streams.err << "zxhost: " << printable(text) << "\n";
    if (!way_out.empty()) streams.err << "        " << way_out << "\n";
    streams.err.flush();
}

bool lacks_its_part(const CLI::App& verb) {
    return verb.get_require_subcommand_min() > 0 && verb.get_subcommands().empty();
}

// What is wrong with the arguments, in our words.
HostError mistake_of(const CLI::App& app, const CLI::ParseError& error) {
    const auto chosen = app.get_subcommands();
    const auto rest = app.remaining();
    std::string mistake = error.what();
    if (chosen.empty() && !rest.empty())
        mistake = "there is no verb or option '" + rest.front() + "'";
    else if (!rest.empty() && lacks_its_part(*chosen.front()))
        mistake = "there is no '" + chosen.front()->get_name() + " " + rest.front() + "'";
    return HostError(ExitStatus::WrongUsage, mistake,
                     "see: zxhost " + (chosen.empty() ? "" : chosen.front()->get_name() + " ") + "--help");
}

}  // namespace

void add_line_verbs(CLI::App& app, Program& program) {
    add_output_settings(app, program.settings);
    for (const auto add :
         {add_info,   add_axes,   add_get,     add_set,          add_init,        add_move,
          add_zero,   add_home,   add_circle,  add_scan,         add_events,      add_session,
          add_run,    add_probes, add_probe,   add_probesystems, add_probesystem, add_keypad,
          add_spin,   add_wobble, add_can,     add_raster,       add_components,  add_watch,
          add_blocks, add_send,   add_receive, add_backup,       add_firmware,    add_magazine})
        add(app, program);
}

void parse_words(CLI::App& app, Program& program, std::vector<std::string> words) {
    let_options_stand_anywhere(app);
    std::reverse(words.begin(), words.end());  // CLI11 takes them from the back
    try {
        app.parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) throw mistake_of(app, error);
        std::ostringstream help;
        app.exit(error, help, help);
        program.verb = [text = help.str()](const Streams& streams) { streams.out << text; };
    }
}

ExitStatus run_and_tell(const Streams& streams, const std::function<void()>& run) {
    try {
        run();
        streams.out.flush();
        return ExitStatus::Done;
    } catch (const HostError& error) {
        streams.out.flush();
        if (!error.is_told) tell(streams, error.what(), error.way_out);
        return error.status;
    } catch (const std::exception& error) {
        tell(streams, std::string("internal error: ") + error.what(), "");
        return ExitStatus::MachineError;
    }
}

ExitStatus run_command_line(std::vector<std::string> arguments, const Streams& streams) {
    Program program;
    CLI::App app("Drives a measuring machine through its driver plug-in.", "zxhost");
    app.allow_windows_style_options(false);  // a word that begins with a slash is the same on every system
    add_connection_settings(app, program.settings);
    add_line_verbs(app, program);
    add_shell(app, program);
    add_config(app, program);
    add_doctor(app, program);
    app.footer(
        "example: zxhost --host 127.0.0.1 --port 7073 move x=12.5 z+=3\n"
        "exit status: 0 done, 1 error of the machine, 2 wrong usage, 3 no connection");
    return run_and_tell(streams, [&] {
        parse_words(app, program, std::move(arguments));
        program.verb(streams);
    });
}

}  // namespace zxhost
