// A machine with probe systems of its own, and a magazine file for it.
#pragma once

#include <map>
#include <set>
#include <string>

#include "bare_machine.h"
#include "mmachmagazinedb.h"
#include "reports.h"
#include "temporary_directory.h"

using Slots = std::map<std::uint32_t, std::uint32_t>;

class ProbesystemMachine : public BareMachine {
public:
    using BareMachine::BareMachine;
    bool IsProbesystemDefined(const std::string& name) override { return m_defined.contains(name); }
    bool IsProbesystemIdDefined(const std::string& name, long id) override {
        const auto found = m_defined.find(name);
        return found != m_defined.end() && found->second.contains(id);
    }
    std::string GetActiveProbesystemName() override { return m_active; }
    long GetActiveProbesystemIdNum() override { return m_active_id; }

    std::map<std::string, std::set<long>> m_defined{{"p", {1, 2}}, {"abc_def", {3}}, {"", {3}}};
    std::string m_active = "p";
    long m_active_id = 1;
};

class MagazineTest : public ReportsTest {
protected:
    static std::string slot(const std::string& section, const std::string& more = "") {
        return "[" + section + "]\nload.program=\"load\"\nunload.program=\"unload\"\n" + more;
    }

    void write(const std::string& content) const { m_directory.file("magazine.ini", content); }
    std::string content() const { return m_directory.content("magazine.ini"); }

    // The database opens this content.
    void open(const std::string& content) {
        write(content);
        ASSERT_TRUE(m_magazine.Open());
    }

    // The outermost report that nobody has looked at.
    std::string last_report() {
        const Texts reports = trace_reports();
        return reports.empty() ? "" : reports.back();
    }

    TemporaryDirectory m_directory;
    MOutputChannel m_channel{7};
    CountingNotifier m_notifier;
    ProbesystemMachine m_machine{&m_channel, &m_notifier};
    const std::string m_path = m_directory.path("magazine.ini");
    MMachMagazineDB m_magazine{&m_machine, m_path};
};
