// zxhost can move|zero|limit|scan: may these axes go together?
#include <CLI/CLI.hpp>
#include <array>
#include <nlohmann/json.hpp>

#include "exit_status.h"
#include "known_names.h"
#include "list_verb.h"
#include "mmachabstract.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

using List = std::vector<std::string>;

struct Question {
    const char* word;
    const char* description;
    const char* example;
    const char* does;  // what the axes would do
    bool (MMachAbstract::*ask)(const AxisSet&);
};

constexpr std::array questions{
    Question{"move", "Can these axes travel together?", "zxhost can move x z", "move",
             &MMachAbstract::IsMovePossibleWith},
    Question{"zero", "Can these axes drive together until the probe touches?", "zxhost can zero x",
             "drive to a contact", &MMachAbstract::IsZeroMovePossibleWith},
    Question{"limit", "Can these axes drive together to their limits? Without AXIS: can any?",
             "zxhost can limit x", "drive to a limit", &MMachAbstract::IsLimitMovePossibleWith},
    Question{"scan", "Can these axes scan together?", "zxhost can scan x y", "scan",
             &MMachAbstract::IsScanningPossibleWith},
};

List inactive_ones(MMachAbstract& machine, const AxisSet& axes) {
    List names;
    for (const std::string& axis : axes)
        if (!machine.IsAxisActive(axis)) names.push_back(axis);
    return names;
}

std::string sentence(bool is_possible, const Question& question, const AxisSet& axes, const List& inactive) {
    std::string text = is_possible ? "yes: " : "no: ";
    text += axes.empty() ? "axes" : names_text({axes.begin(), axes.end()});
    text += is_possible ? " can " : " can't ";
    text += question.does;
    if (axes.size() > 1) text += " together";
    if (!is_possible && !inactive.empty()) text += "; inactive: " + names_text(inactive);
    return text;
}

// A "no" is a result, which a script reads from the exit status as well.
void answer(VerbHost& host, const Question& question, const AxisSet& axes) {
    const bool is_possible = host.ask("the question", [&] { return (host.machine().*question.ask)(axes); });
    const List inactive = inactive_ones(host.machine(), axes);
    if (host.wants_json())
        write_json(
            host.out(),
            {{"question", question.word}, {"axes", axes}, {"possible", is_possible}, {"inactive", inactive}});
    else
        host.out() << sentence(is_possible, question, axes, inactive) << "\n";
    if (!is_possible) throw HostError::told_already(ExitStatus::MachineError, "the answer is no");
}

}  // namespace

void add_can(CLI::App& app, Program& program) {
    CLI::App& group =
        add_verb_group(app, "can", "Ask the machine what axes can do together: exit status 0 yes, 1 no");
    for (const Question& question : questions)
        add_list_verb(group, program,
                      {.name = question.word,
                       .description = question.description,
                       .example = question.example,
                       .argument = "AXIS",
                       .argument_help = "names"},
                      [&question](const Settings& settings, const Streams& streams, const List& names) {
                          const AxisSet axes = parse_axis_set(names);
                          VerbHost host(settings, streams);
                          check_known(known_axes(host.machine()), names);
                          answer(host, question, axes);
                      });
}

}  // namespace zxhost
