// zxhost magazine show|check|set|delete|load|unload|change.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>

#include "exit_status.h"
#include "known_names.h"
#include "list_verb.h"
#include "number_text.h"
#include "open_magazine.h"
#include "verb_host.h"
#include "verbs.h"

namespace zxhost {
namespace {

struct MagazineOptions {
    std::string file;
    std::vector<std::string> words;
    std::vector<std::string> system;  // name and id; empty: the loaded one
    bool all = false;
};

std::uint32_t number_of(const std::string& text, const char* what) {
    const auto number = whole_number_from(text);
    if (!number || *number < 0)
        throw HostError(ExitStatus::WrongUsage, "'" + printable(text) + "' is not the number of a " + what,
                        "write a whole number, 0 or greater");
    return static_cast<std::uint32_t>(*number);
}

Json program_json(bool has, const std::string& program) { return has ? Json(program) : Json(); }

// A row for each slot of the system that the operations are about.
void add_slot_rows(Json& rows, OpenMagazine& magazine, const MagazineSystem& system) {
    magazine.ask([&] {
        MMachAbstract& machine = magazine.machine();
        for (const auto& [slot, probe] : machine.GetSlots("", 0)) {
            std::string load, unload;
            const bool loads = machine.GetLoadProgram(load, slot);
            const bool unloads = machine.GetUnloadProgram(unload, slot);
            rows.push_back({{"system", system.name},
                            {"id", system.id},
                            {"slot", slot},
                            {"probe", probe ? Json(probe) : Json()},
                            {"load", program_json(loads, load)},
                            {"unload", program_json(unloads, unload)}});
        }
        return true;
    });
}

void show_rows(VerbHost& host, const Json& rows) {
    host.show({{"system", "probe system"},
               {"id", "id"},
               {"slot", "slot"},
               {"probe", "probe"},
               {"load", "load program"},
               {"unload", "unload program"}},
              rows);
}

void show_system(VerbHost& host, OpenMagazine& magazine) {
    Json rows = Json::array();
    add_slot_rows(rows, magazine, magazine.system());
    show_rows(host, rows);
}

void show_magazine(VerbHost& host, const MagazineOptions& options) {
    OpenMagazine magazine(host, options.file, options.system);
    if (!options.system.empty()) return show_system(host, magazine);
    const auto systems = magazine.ask([&] { return host.machine().ListProbesystems("", 0); });
    Json rows = Json::array();
    for (const CProbesystemEntry& entry : systems) {
        magazine.machine().choose(entry.name, entry.id);
        add_slot_rows(rows, magazine, {entry.name, entry.id});
    }
    show_rows(host, rows);
}

Json finding_json(const MagazineFinding& finding) {
    return {{"line", finding.line ? Json(finding.line) : Json()}, {"text", finding.text}};
}

void check_file(VerbHost& host, const MagazineOptions& options) {
    check_has(host.machine().HasProbesystems(), "probe systems");
    const MagazineVerdict verdict =
        host.ask("the magazine", [&] { return check_magazine(options.file, host.machine()); });
    Json row{{"state", verdict.fault ? "damaged" : "good"}, {"slots", verdict.slots}, {"file", options.file}};
    if (host.wants_json()) {
        row["fault"] = verdict.fault ? finding_json(*verdict.fault) : Json();
        row["remarks"] = Json::array();
        for (const MagazineFinding& remark : verdict.remarks) row["remarks"].push_back(finding_json(remark));
        write_json(host.out(), row);
    } else {
        host.show({{"state", "state"}, {"slots", "slots"}, {"file", "file"}}, Json::array({row}));
        for (const MagazineFinding& remark : verdict.remarks)
            host.out() << printable(fmt::format("{}:{}: {}", options.file, remark.line, remark.text)) << "\n";
    }
    if (verdict.fault) refuse_damaged_magazine(options.file, *verdict.fault);
}

struct SlotChange {
    std::uint32_t slot = 0;
    std::uint32_t probe = 0;
};

std::vector<SlotChange> parse_changes(const std::vector<std::string>& words) {
    std::vector<SlotChange> changes;
    std::set<std::uint32_t> slots;
    for (const std::string& word : words) {
        const std::size_t equals = word.find('=');
        if (equals == word.npos)
            throw HostError(ExitStatus::WrongUsage, "'" + printable(word) + "' says no probe",
                            "write SLOT=PROBE, and 0 for an empty slot");
        const SlotChange change{number_of(word.substr(0, equals), "slot"),
                                number_of(word.substr(equals + 1), "probe")};
        if (!slots.insert(change.slot).second)
            throw HostError(ExitStatus::WrongUsage, fmt::format("slot {} is named twice", change.slot),
                            "name each slot once");
        changes.push_back(change);
    }
    return changes;
}

void set_slots(VerbHost& host, const MagazineOptions& options) {
    const std::vector<SlotChange> changes = parse_changes(options.words);
    OpenMagazine magazine(host, options.file, options.system);
    magazine.check_change();
    for (const SlotChange& change : changes) magazine.check_slot(change.slot);
    for (const SlotChange& change : changes)
        magazine.change([&] { return magazine.machine().SetSlot(change.slot, change.probe); });
    show_system(host, magazine);
}

void delete_probe(OpenMagazine& magazine, std::uint32_t probe) {
    const MagazineSystem of = magazine.system();
    if (!magazine.ask([&] { return magazine.machine().GetSlotOfProbe(probe); }))
        throw HostError(ExitStatus::MachineError,
                        fmt::format("no slot of the probe system {} holds probe {}", of.text(), probe),
                        "see which do with: zxhost magazine show " + magazine.file());
    magazine.change([&] { return magazine.machine().database().DeleteProbe(probe); });
}

void delete_slots(OpenMagazine& magazine) {
    const MagazineSystem of = magazine.system();
    magazine.change([&] {
        return magazine.machine().database().DeleteProbesystem(of.name, static_cast<std::uint32_t>(of.id));
    });
}

void delete_from(VerbHost& host, const MagazineOptions& options) {
    if (options.all != options.words.empty())
        throw HostError(ExitStatus::WrongUsage, "a probe is expected, or --all",
                        "write: zxhost magazine delete FILE PROBE");
    std::vector<std::uint32_t> probes;
    for (const std::string& word : options.words) {
        probes.push_back(number_of(word, "probe"));
        if (probes.back() == 0)
            throw HostError(ExitStatus::WrongUsage, "probe 0 means none", "name a probe that lies in a slot");
    }
    OpenMagazine magazine(host, options.file, options.system);
    magazine.check_change();
    if (options.all) delete_slots(magazine);
    for (const std::uint32_t probe : probes) delete_probe(magazine, probe);
    show_system(host, magazine);
}

void show_program(VerbHost& host, bool has, const std::string& what, const std::string& program) {
    if (!has)
        throw HostError(ExitStatus::MachineError, "there is no program " + what,
                        "programs are made by writing the file");
    if (host.wants_json())
        write_json(host.out(), {{"program", program}});
    else
        host.out() << printable(program) << "\n";
}

std::uint32_t only_slot(const MagazineOptions& options, std::size_t index, std::size_t count) {
    if (options.words.size() != count)
        throw HostError(
            ExitStatus::WrongUsage,
            fmt::format("{} of a magazine {} expected, and not {}", count == 1 ? "one slot" : "two slots",
                        count == 1 ? "is" : "are", options.words.size()),
            "see them with: zxhost magazine show FILE");
    return number_of(options.words[index], "slot");
}

void show_load(VerbHost& host, const MagazineOptions& options) {
    const std::uint32_t slot = only_slot(options, 0, 1);
    OpenMagazine magazine(host, options.file, options.system);
    magazine.check_slot(slot);
    std::string program;
    const bool has = magazine.ask([&] { return magazine.machine().GetLoadProgram(program, slot); });
    show_program(host, has, fmt::format("that loads from slot {}", slot), program);
}

void show_unload(VerbHost& host, const MagazineOptions& options) {
    const std::uint32_t slot = only_slot(options, 0, 1);
    OpenMagazine magazine(host, options.file, options.system);
    magazine.check_slot(slot);
    std::string program;
    const bool has = magazine.ask([&] { return magazine.machine().GetUnloadProgram(program, slot); });
    show_program(host, has, fmt::format("that unloads to slot {}", slot), program);
}

// A direct change may lead to a slot that the file doesn't have.
void show_change(VerbHost& host, const MagazineOptions& options) {
    const std::uint32_t from = only_slot(options, 0, 2);
    const std::uint32_t to = only_slot(options, 1, 2);
    OpenMagazine magazine(host, options.file, options.system);
    magazine.check_slot(from);
    std::string program;
    const bool has = magazine.ask([&] { return magazine.machine().GetChangeProgram(program, from, to); });
    show_program(host, has, fmt::format("that changes from slot {} to slot {}", from, to), program);
}

struct MagazineVerb {
    const char* name;
    const char* description;
    const char* example;
    const char* argument;  // null: none but the file
    const char* argument_help;
    bool has_system;
    void (*run)(VerbHost& host, const MagazineOptions& options);
};

constexpr MagazineVerb magazine_verbs[] = {
    {"show", "Show the slots of all probe systems, their probes and programs",
     "zxhost magazine show magazine.ini", nullptr, "", true, show_magazine},
    {"check", "Say whether the file is good, and where it isn't", "zxhost magazine check magazine.ini",
     nullptr, "", false, check_file},
    {"set", "Say which probe lies in a slot", "zxhost magazine set magazine.ini 1=7 2=0", "SLOT=PROBE",
     "slots that the file has; probe 0 empties one", true, set_slots},
    {"delete", "Take a probe out of its slot", "zxhost magazine delete magazine.ini 7", "NUMBER",
     "probes; of one that lies in several slots, the first is emptied", true, delete_from},
    {"load", "Show the program that loads the probe of a slot", "zxhost magazine load magazine.ini 1", "SLOT",
     "its number", true, show_load},
    {"unload", "Show the program that puts the probe back to a slot", "zxhost magazine unload magazine.ini 1",
     "SLOT", "its number", true, show_unload},
    {"change", "Show the program that changes from one slot's probe to another's",
     "zxhost magazine change magazine.ini 1 2", "SLOT", "two: from, and to", true, show_change},
};

void add_magazine_verb(CLI::App& group, Program& program, const MagazineVerb& verb) {
    const auto options = std::make_shared<MagazineOptions>();
    CLI::App* const part = group.add_subcommand(verb.name, verb.description);
    part->add_option("FILE", options->file, "magazine file")->required();
    const bool is_delete = verb.run == delete_from;
    if (verb.argument)
        part->add_option(verb.argument, options->words, verb.argument_help)->required(!is_delete);
    if (is_delete)
        part->add_flag("--all", options->all, "delete all slots of the probe system from the file");
    if (verb.has_system)
        part->add_option("--system", options->system,
                         "name and id of a probe system; default: the loaded one")
            ->expected(2)
            ->type_name("NAME ID");
    part->footer(std::string("example: ") + verb.example);
    part->callback([&program, options, run = verb.run] {
        program.verb = [&program, options, run](const Streams& streams) {
            if (program.settings.rehearsal) return;  // the file may be one that a line before leaves behind
            VerbHost host(program.settings, streams);
            run(host, *options);
        };
    });
}

}  // namespace

void add_magazine(CLI::App& app, Program& program) {
    CLI::App& group =
        add_verb_group(app, "magazine",
                       "Which probe lies in which slot of a magazine, and the programs that change "
                       "them: a file");
    for (const MagazineVerb& verb : magazine_verbs) add_magazine_verb(group, program, verb);
}

}  // namespace zxhost
