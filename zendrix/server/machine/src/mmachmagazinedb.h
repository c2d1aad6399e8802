// The face of a probe magazine's database: which probe lies in which slot, and the measuring programs that load,
// unload and change probes. Slots and probes are numbered from 1; 0 means none. All answers but that of
// GetSlots speak of the active probe system.
#pragma once

#include <cstdint>
#include <map>
#include <string>

class MMachMagazineDB {
public:
    virtual ~MMachMagazineDB() = default;
    virtual std::uint32_t GetSlotOfProbe(std::uint32_t probe) = 0;
    virtual bool IsSlotDefined(std::uint32_t slot) = 0;
    virtual bool SetSlot(std::uint32_t slot, std::uint32_t probe) = 0;
    virtual std::string GetLoadProgram(std::uint32_t slot) = 0;    // empty if there is none
    virtual std::string GetUnloadProgram(std::uint32_t slot) = 0;  // empty if there is none
    virtual std::string GetChangeProgram(std::uint32_t from, std::uint32_t to) = 0;
    virtual std::map<std::uint32_t, std::uint32_t> GetSlots(const std::string& name, std::uint32_t id) = 0;
};
