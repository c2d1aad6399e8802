#include "open_magazine.h"

#include <fmt/format.h>

#include "known_names.h"
#include "number_text.h"

namespace zxhost {

std::string MagazineSystem::text() const { return fmt::format("'{}' with id {}", printable(name), id); }

void refuse_damaged_magazine(const std::string& file, const MagazineFinding& fault) {
    const std::string where = fault.line ? fmt::format("{}:{}", file, fault.line) : file;
    throw HostError(ExitStatus::MachineError, where + ": " + fault.text,
                    "mend the file, then look again with: zxhost magazine check " + file);
}

OpenMagazine::OpenMagazine(VerbHost& host, const std::string& file, const std::vector<std::string>& system)
    : m_host(host), m_file(file), m_machine(host.machine(), file) {
    check_has(host.machine().HasProbesystems(), "probe systems");
    m_verdict = ask([&] { return check_magazine(m_file, host.machine()); });
    if (m_verdict.fault) refuse_damaged_magazine(m_file, *m_verdict.fault);
    if (!ask([&] { return m_machine.database().Open(); })) refuse_unread();
    if (!system.empty()) choose(system);
}

MagazineSystem OpenMagazine::system() {
    if (m_chosen.name.empty() && !ask([&] { return m_host.machine().IsProbesystemLoaded(); }))
        throw HostError(ExitStatus::MachineError, "no probe system is loaded",
                        "name one with --system NAME ID, or load one with: zxhost probesystem load NAME ID");
    return ask([&] {
        return MagazineSystem{m_machine.GetActiveProbesystemName(), m_machine.GetActiveProbesystemIdNum()};
    });
}

void OpenMagazine::check_slot(std::uint32_t slot) {
    const MagazineSystem of = system();
    if (ask([&] { return m_machine.IsSlotDefined(slot); })) return;
    KnownNames known{"slot", {}, "magazine show " + m_file};
    for (const auto& [number, probe] : ask([&] { return m_machine.GetSlots("", 0); }))
        known.names.push_back(std::to_string(number));
    throw HostError(ExitStatus::MachineError,
                    fmt::format("{} has no slot {} for the probe system {}", m_file, slot, of.text()),
                    known.names.empty() ? "it has none for it; slots are made by writing the file"
                                        : "it has: " + names_text(known.names));
}

void OpenMagazine::check_change() {
    if (!m_machine.database().IsFileRead()) refuse_unread();
    if (!m_verdict.remarks.empty()) refuse_damaged_magazine(m_file, m_verdict.remarks.front());
}

void OpenMagazine::refuse_unread() const {
    throw HostError(ExitStatus::WrongUsage,
                    "the magazine file " + m_file + " can't be read, and a change would write it anew",
                    "look at it with: zxhost magazine check " + m_file);
}

void OpenMagazine::refuse_unwritten() {
    const bool is_known = m_machine.database().IsFileRead();
    throw HostError(
        ExitStatus::WrongUsage,
        fmt::format("the change can't be written to {}{}", m_file,
                    is_known ? ", which stays as it was" : ", and what is in it now can't be read"),
        "may you write in its directory, and is there room? The error log has the reason");
}

void OpenMagazine::choose(const std::vector<std::string>& words) {
    const auto id = whole_number_from(words[1]);
    if (!id)
        throw HostError(ExitStatus::WrongUsage,
                        "'" + printable(words[1]) + "' is not the id of a probe system",
                        "write: --system NAME ID");
    m_chosen = {words[0], *id};
    if (!ask([&] { return m_host.machine().IsProbesystemIdDefined(m_chosen.name, m_chosen.id); }))
        throw HostError(ExitStatus::MachineError, "this machine has no probe system " + m_chosen.text(),
                        "see its probe systems with: zxhost probesystems");
    m_machine.choose(m_chosen.name, m_chosen.id);
}

}  // namespace zxhost
