// A magazine file behind the machine's own operations, as the verbs use it.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "errtrace.h"
#include "exit_status.h"
#include "magazine_check.h"
#include "magazine_machine.h"
#include "verb_host.h"

namespace zxhost {

struct MagazineSystem {
    std::string name;
    long id = 0;

    std::string text() const;
};

// Throws HostError with the line of the fault.
[[noreturn]] void refuse_damaged_magazine(const std::string& file, const MagazineFinding& fault);

class OpenMagazine {
public:
    // `system` is the name and id of the probe system that the operations are about; empty: the loaded one.
    // Throws HostError if the file is damaged or can't be read, or the machine has no such system.
    OpenMagazine(VerbHost& host, const std::string& file, const std::vector<std::string>& system);

    template <class Function>
    auto ask(Function&& function) {
        return m_host.ask("the magazine", std::forward<Function>(function));
    }

    MagazineMachine& machine() { return m_machine; }
    const std::string& file() const { return m_file; }

    // The one that the operations are about. Throws HostError if none is loaded and none was named.
    MagazineSystem system();

    // Throws HostError if the file has no such slot for that system.
    void check_slot(std::uint32_t slot);

    // Throws HostError where a change would spoil the file.
    void check_change();

    // `change` makes one change and tells whether it is in the file. Throws HostError if it isn't.
    template <class Change>
    void change(Change&& change) {
        MErrTraceContext context("open_magazine.h");
        if (ask(std::forward<Change>(change))) return;
        context.DumpToMErrLog(__LINE__, "magazine: %s is not changed", m_file.c_str());
        refuse_unwritten();
    }

private:
    [[noreturn]] void refuse_unread() const;
    [[noreturn]] void refuse_unwritten();
    void choose(const std::vector<std::string>& words);

    VerbHost& m_host;
    const std::string m_file;
    MagazineMachine m_machine;
    MagazineVerdict m_verdict;
    MagazineSystem m_chosen;
};

}  // namespace zxhost
