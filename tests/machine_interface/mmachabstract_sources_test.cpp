// What MMachAbstract hands on to a source of probe systems, a source of probes and a magazine.
#include <gtest/gtest.h>

#include "bare_machine.h"
#include "mmachmagazinedb.h"
#include "mmachprobesources.h"
#include "temporary_directory.h"

namespace {

using Calls = std::vector<std::string>;

std::string call(const char* name, const std::string& text, long number) {
    return std::string(name) + "(" + text + ", " + std::to_string(number) + ")";
}

class Probesystems : public MMachProbesystemSource {
public:
    bool IsProbesystemDefined(const std::string& name) override { return note(call("defined", name, 0)); }
    const std::string* GetFirstSupportedProbesystem() override { return &m_first; }
    const std::string* GetNextSupportedProbesystem() override { return &m_next; }
    bool IsProbesystemIdDefined(const std::string& name, long id) override {
        return note(call("id defined", name, id));
    }
    std::vector<CProbesystemEntry> ListProbesystems(const std::string& name, long id) override {
        note(call("list", name, id));
        return std::vector<CProbesystemEntry>(3);
    }
    bool IsProbesystemLoaded() override { return note("loaded"); }
    bool IsProbesystemSupported(const std::string& name) override { return note(call("supported", name, 0)); }
    std::string GetActiveProbesystemName() override { return "active"; }
    long GetActiveProbesystemIdNum() override { return 42; }
    MMachProbesystemType GetActiveProbesystemType() override { return {.type = 3, .b = 5}; }

    const std::string m_first = "first";
    const std::string m_next = "next";
    Calls m_calls;

private:
    bool note(const std::string& text) {
        m_calls.push_back(text);
        return true;
    }
};

class Probes : public MMachProbeSource {
public:
    bool IsProbeDefined(long probe) override { return probe == 1; }
    bool IsTipDefined(long probe, long tip) override { return probe == 1 && tip == 2; }
    std::vector<CProbe> ListProbes(long probe, long tip) override {
        return {CProbe{.probe = static_cast<std::int32_t>(probe), .tip = static_cast<std::int32_t>(tip)}};
    }
    int GetMaxProbeNum() override { return 10; }
    int GetMinProbeNum() override { return 11; }
    int GetActiveProbeNum() override { return 12; }
    int GetActiveTipNum() override { return 13; }
};

class MachSources : public testing::Test {
protected:
    MOutputChannel m_channel{7};
    CountingNotifier m_notifier;
    BareMachine m_machine{&m_channel, &m_notifier};
};

TEST_F(MachSources, ProbesystemsAreTheSources) {
    Probesystems source;
    m_machine.m_pProbesystemSource = &source;
    EXPECT_TRUE(m_machine.HasProbesystems());
    EXPECT_TRUE(m_machine.IsProbesystemDefined("a"));
    EXPECT_EQ(m_machine.GetFirstSupportedProbesystem(), &source.m_first);
    EXPECT_EQ(m_machine.GetNextSupportedProbesystem(), &source.m_next);
    EXPECT_TRUE(m_machine.IsProbesystemIdDefined("b", 7));
    EXPECT_EQ(m_machine.ListProbesystems("c", 8).size(), 3U);
    EXPECT_TRUE(m_machine.IsProbesystemLoaded());
    EXPECT_TRUE(m_machine.IsProbesystemSupported("d"));
    EXPECT_EQ(source.m_calls,
              (Calls{"defined(a, 0)", "id defined(b, 7)", "list(c, 8)", "loaded", "supported(d, 0)"}));
    EXPECT_EQ(m_machine.GetActiveProbesystemName(), "active");
    EXPECT_EQ(m_machine.GetActiveProbesystemIdNum(), 42);
    EXPECT_EQ(m_machine.GetActiveProbesystemType().type, 3);
    EXPECT_EQ(m_machine.GetActiveProbesystemType().b, 5);
    EXPECT_FALSE(m_machine.HasProbes());
}

TEST_F(MachSources, ProbesAreTheSources) {
    Probes source;
    m_machine.m_pProbeSource = &source;
    EXPECT_TRUE(m_machine.HasProbes());
    EXPECT_TRUE(m_machine.IsProbeDefined(1));
    EXPECT_FALSE(m_machine.IsProbeDefined(2));
    EXPECT_TRUE(m_machine.IsTipDefined(1, 2));
    EXPECT_FALSE(m_machine.IsTipDefined(2, 1));
    ASSERT_EQ(m_machine.ListProbes(3, 4).size(), 1U);
    EXPECT_EQ(m_machine.ListProbes(3, 4)[0].probe, 3);
    EXPECT_EQ(m_machine.ListProbes(3, 4)[0].tip, 4);
    EXPECT_EQ(m_machine.GetMaxProbeNum(), 10);
    EXPECT_EQ(m_machine.GetMinProbeNum(), 11);
    EXPECT_EQ(m_machine.GetActiveProbeNum(), 12);
    EXPECT_EQ(m_machine.GetActiveTipNum(), 13);
    EXPECT_FALSE(m_machine.HasProbesystems());
}

// A magazine with two slots of the probe system that the source above says is active.
class MachMagazine : public MachSources {
protected:
    void SetUp() override {
        m_machine.m_pProbesystemSource = &m_probesystems;
        ASSERT_TRUE(m_magazine.Open());
        m_machine.m_pMagazine = &m_magazine;
    }

    Probesystems m_probesystems;
    TemporaryDirectory m_directory;
    MMachMagazineDB m_magazine{
        &m_machine, m_directory.file("magazine.ini",
                                     "[active_42_slot3]\nload.program=load 3\nunload.program=\n"
                                     "change_to_9.program=change 3 9\nprobe=7\n"
                                     "[active_42_slot4]\nload.program=\nunload.program=unload 4\n")};
};

TEST_F(MachMagazine, SlotsAreTheMagazines) {
    EXPECT_TRUE(m_machine.HasMagazine());
    EXPECT_EQ(m_machine.GetSlotOfProbe(7), 3U);
    EXPECT_TRUE(m_machine.IsSlotDefined(4));
    EXPECT_FALSE(m_machine.IsSlotDefined(5));
    EXPECT_TRUE(m_machine.SetSlot(4, 5));
    EXPECT_FALSE(m_machine.SetSlot(5, 4));
    EXPECT_EQ(m_machine.GetSlots("active", 42), (std::map<std::uint32_t, std::uint32_t>{{3, 7}, {4, 5}}));
    EXPECT_TRUE(m_machine.GetSlots("active", 43).empty());
}

TEST_F(MachMagazine, ProgramsAreTrueUnlessEmpty) {
    std::string program = "old";
    EXPECT_TRUE(m_machine.GetLoadProgram(program, 3));
    EXPECT_EQ(program, "load 3");
    EXPECT_TRUE(m_machine.GetUnloadProgram(program, 4));
    EXPECT_EQ(program, "unload 4");
    EXPECT_TRUE(m_machine.GetChangeProgram(program, 3, 9));
    EXPECT_EQ(program, "change 3 9");
    EXPECT_FALSE(m_machine.GetLoadProgram(program, 4));
    EXPECT_EQ(program, "");
    program = "old";
    EXPECT_FALSE(m_machine.GetUnloadProgram(program, 3));
    EXPECT_EQ(program, "");
    program = "old";
    EXPECT_FALSE(m_machine.GetChangeProgram(program, 1, 2));
    EXPECT_EQ(program, "");
}

class MachineThatHidesItsMagazine : public BareMachine {
public:
    using BareMachine::BareMachine;
    bool HasMagazine() override { return false; }
};

TEST_F(MachMagazine, TheSubclassDecidesWhetherThereIsAMagazine) {
    MachineThatHidesItsMagazine machine(&m_channel, &m_notifier);
    machine.m_pMagazine = &m_magazine;
    std::string program = "untouched";
    EXPECT_EQ(machine.GetSlotOfProbe(7), 0U);
    EXPECT_FALSE(machine.IsSlotDefined(4));
    EXPECT_FALSE(machine.SetSlot(4, 5));
    EXPECT_FALSE(machine.GetLoadProgram(program, 3));
    EXPECT_FALSE(machine.GetUnloadProgram(program, 4));
    EXPECT_FALSE(machine.GetChangeProgram(program, 3, 9));
    EXPECT_TRUE(machine.GetSlots("active", 42).empty());
    EXPECT_EQ(program, "untouched");
}

}  // namespace
