// The open machine with a magazine that is kept in a file.
#pragma once

#include <string>

#include "forwarding_machine.h"
#include "mmachmagazinedb.h"

namespace zxhost {

// Borrows the real machine. The magazine's operations work on the file, those of the one probe system that
// was chosen, or else on that of the loaded one.
class MagazineMachine : public ForwardingMachine {
public:
    MagazineMachine(MMachAbstract& real, const std::string& file)
        : ForwardingMachine(real), m_database(this, file) {
        m_pMagazine = &m_database;
    }

    MMachMagazineDB& database() { return m_database; }

    void choose(const std::string& name, long id) {
        m_is_chosen = true;
        m_system = name;
        m_id = id;
    }

    std::string GetActiveProbesystemName() override {
        return m_is_chosen ? m_system : real().GetActiveProbesystemName();
    }
    long GetActiveProbesystemIdNum() override {
        return m_is_chosen ? m_id : real().GetActiveProbesystemIdNum();
    }

private:
    MMachMagazineDB m_database;
    bool m_is_chosen = false;
    std::string m_system;
    long m_id = 0;
};

}  // namespace zxhost
