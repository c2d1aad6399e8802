// The database of the probe magazines: which probe lies in which slot, and the measuring programs that load,
// unload and change probes. It is an index over one ini file, which it writes anew after every change.
//
// Probes are numbered from 1; 0 means none. Where no probe system is given, the active one is meant, which
// the machine is asked for each time. Failures go to the error trace; nothing is thrown.
//
// After a failed change file and index agree again, with the file as it was. A file that couldn't be read
// leaves the index as it was before; the next change then writes the file anew from what could be read. Who
// lets people change a magazine asks IsFileRead() first.
//
// No lock: one thread at a time, the one that may ask the machine.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "MIniData.h"

class MMachAbstract;

struct MMachMagazineSlot {
    std::uint32_t probe = 0;     // 0: the slot is empty
    std::string unload_program;  // as it stands in the file, with its quotes if any
    std::string load_program;
    std::map<std::uint32_t, std::string> change_programs;  // by the slot to change to
};

class MMachMagazineDB {
public:
    // Borrows the machine, which must outlive the object. Reads nothing yet.
    MMachMagazineDB(MMachAbstract* machine, const std::string& path);
    MMachMagazineDB(const MMachMagazineDB&) = delete;
    MMachMagazineDB& operator=(const MMachMagazineDB&) = delete;

    // Reads the file; a missing one is a database without magazines. A file that can be read but isn't one
    // of magazines of this machine's probe systems leaves the index empty.
    bool Open();

    // Does the index tell what is in the file, as far as this object knows? False before Open, after an Open
    // that failed, and after a failed change that couldn't be followed by reading the file back. A change
    // then writes the file anew, and what couldn't be read of it is lost.
    bool IsFileRead() const { return m_isFileRead; }

    // Puts this text in the file's place if it is a magazine file; else the file stays, and is read again.
    bool Send(const std::string& content);

    // Says which probe lies in a slot that the file has; 0 empties it. The probe is not tested, and may lie
    // in another slot as well.
    bool SetSlot(std::uint32_t slot, std::uint32_t probe);

    // The lowest slot with this probe; 0 if there is none.
    std::uint32_t GetSlotOfProbe(std::uint32_t probe) const;
    bool IsSlotDefined(std::uint32_t slot) const;

    // Programs without the quotes around them; empty if there is none.
    std::string GetLoadProgram(std::uint32_t slot) const;
    std::string GetUnloadProgram(std::uint32_t slot) const;

    // The program for this very change, or the one that unloads and the one that loads with a ';' between.
    // Programs in quotes then keep those inside: "a" and "b" become a";"b.
    std::string GetChangeProgram(std::uint32_t from, std::uint32_t to) const;

    // The probe in each slot of a probe system; the empty name with id 0 means the active one.
    std::map<std::uint32_t, std::uint32_t> GetSlots(const std::string& name, std::uint32_t id) const;

    // Empties the lowest slot with this probe. True, with nothing written, if there is none.
    bool DeleteProbe(std::uint32_t probe);

    // Removes all slots of a probe system. True, with nothing written, if there are none.
    bool DeleteProbesystem(const std::string& name, std::uint32_t id);

protected:
    using Magazine = std::map<std::uint32_t, MMachMagazineSlot>;

    bool analyse_inifile();
    void resync_inifile();

    const std::string filename;
    MIniData inidata;
    MMachAbstract* const mach;
    std::map<std::string, Magazine> magazines;  // by the key of the probe system

private:
    struct Probesystem {
        std::string name;
        std::uint32_t id = 0;
    };

    Probesystem active_probesystem() const;
    const Magazine* find_magazine(const Probesystem& probesystem) const;
    const Magazine* active_magazine() const { return find_magazine(active_probesystem()); }
    const MMachMagazineSlot* find_active_slot(std::uint32_t slot) const;
    bool read_file();
    bool analyse_section(const std::string& section);
    bool is_defined(const Probesystem& probesystem) const;
    bool read_slot(const std::string& section, MMachMagazineSlot& slot) const;
    bool read_program(const std::string& section, const char* entry, std::string& program) const;
    bool read_change_programs(const std::string& section, MMachMagazineSlot& slot) const;
    bool take_content(const std::string& content);
    bool delete_sections(const Probesystem& probesystem, const Magazine& magazine);

    bool m_isFileRead = false;
};
