// What the host asks about the machine, its components and its axes.
#include <bit>
#include <cmath>
#include <limits>

#include "driver_fixture.h"

namespace {

class MachineTest : public DriverTest {
protected:
    static constexpr std::uint64_t unknown_bits = 0x7FF8000000000000;
    static bool is_unknown(double value) { return std::bit_cast<std::uint64_t>(value) == unknown_bits; }

    void add_axis(const std::string& name) { answers.capabilities[name].name = name; }

    static std::string shown(const MMachComponentInfo* info) {
        return info ? info->name + " " + info->version + " " + std::to_string(info->state) : "null";
    }
    std::string walk_components() {
        std::string all;
        for (auto* info = driver->GetFirstComponentInfo(); info; info = driver->GetNextComponentInfo()) {
            all += shown(info) + "\n";
        }
        return all;
    }
};

TEST_F(MachineTest, TheNamesAreTheMachinesAndSurviveClose) {
    open();
    EXPECT_STREQ(driver->GetMachineName(), "scripted machine");
    EXPECT_STREQ(driver->GetMachineRevision(), "1.0");
    EXPECT_STREQ(driver->GetSerialNumber(), "4711");
    EXPECT_EQ(script.take_calls(), (Lines{"GetMachineName()", "GetMachineRevision()", "GetSerialNumber()"}));
    answers.machine_name = "another";
    EXPECT_STREQ(driver->GetMachineName(), "another");
    driver->Close();
    EXPECT_STREQ(driver->GetMachineName(), "another");
    EXPECT_STREQ(driver->GetSerialNumber(), "4711");
}

TEST_F(MachineTest, TwoDriversShareTheNames) {
    OpenDriver other(&channel, &notifier, "none", "none");
    other.m_registry = &registry;
    open();
    answers.machine_name = "one";
    EXPECT_STREQ(driver->GetMachineName(), "one");
    EXPECT_STREQ(other.GetMachineName(), "one");
    ASSERT_TRUE(other.Open());
    answers.machine_name = "two";
    EXPECT_STREQ(other.GetMachineName(), "two");
    driver->Close();
    EXPECT_STREQ(driver->GetMachineName(), "two");
}

TEST_F(MachineTest, AnErrorOfANamePasses) {
    open();
    script.throw_error("GetMachineRevision", "gone");
    EXPECT_THROW(driver->GetMachineRevision(), CZendrixError);
}

TEST_F(MachineTest, WithoutAClientThereAreNoComponents) {
    answers.components = {{"a", "1"}};
    answers.options = {{"a", "1"}};
    EXPECT_EQ(driver->GetFirstComponentInfo(), nullptr);
    EXPECT_EQ(driver->GetNextComponentInfo(), nullptr);
    EXPECT_EQ(driver->GetComponentInfo("a"), nullptr);
    EXPECT_EQ(driver->GetFirstOptionInfo(), nullptr);
    EXPECT_EQ(driver->GetNextOptionInfo(), nullptr);
    open();
    EXPECT_NE(driver->GetComponentInfo("a"), nullptr);
    driver->Close();
    EXPECT_EQ(driver->GetComponentInfo("a"), nullptr) << "known, but there is no machine";
}

TEST_F(MachineTest, TheDriversOwnComponentStandsAmongThem) {
    open();
    EXPECT_EQ(walk_components(), "backup.m2zendrix_dll 0.00-1 1\n");
    answers.components = {{"a", "1.0"}, {"controller", "2.0"}};
    EXPECT_EQ(walk_components(), "a 1.0 3\nbackup.m2zendrix_dll 0.00-1 1\ncontroller 2.0 3\n");
    answers.components = {{"backup.m2zendrix_dll", "9"}};
    EXPECT_EQ(walk_components(), "backup.m2zendrix_dll 9 3\n");
    EXPECT_EQ(driver->GetNextComponentInfo(), nullptr);
}

TEST_F(MachineTest, TheBackupIsFoundOnlyAfterAWalk) {
    open();
    EXPECT_EQ(driver->GetComponentInfo("backup.m2zendrix_dll"), nullptr);
    EXPECT_EQ(script.take_calls(), Lines{"GetComponentsMap()"});
    driver->GetFirstComponentInfo();
    EXPECT_EQ(shown(driver->GetComponentInfo("backup.m2zendrix_dll")), "backup.m2zendrix_dll 0.00-1 1");
    EXPECT_EQ(script.take_calls(), Lines{"GetComponentsMap()"}) << "the second answer is the driver's own";
}

TEST_F(MachineTest, AComponentIsFetchedOnce) {
    answers.components = {{"a", "1.0"}, {"b", "2.0"}};
    open();
    EXPECT_EQ(shown(driver->GetComponentInfo("b")), "b 2.0 3");
    EXPECT_EQ(shown(driver->GetComponentInfo("b")), "b 2.0 3");
    EXPECT_EQ(script.take_calls(), Lines{"GetComponentsMap()"});
    EXPECT_EQ(driver->GetComponentInfo("c"), nullptr);
    EXPECT_TRUE(driver->TestComponentA("b"));
    EXPECT_TRUE(driver->TestComponentB("b"));
    EXPECT_FALSE(driver->TestComponentA("c"));
}

TEST_F(MachineTest, ALookUpEndsAWalk) {
    answers.components = {{"a", "1.0"}, {"b", "2.0"}};
    open();
    for (const std::string name : {"a", "unknown"}) {
        EXPECT_EQ(shown(driver->GetFirstComponentInfo()), "a 1.0 3");
        driver->GetComponentInfo(name);
        EXPECT_EQ(driver->GetNextComponentInfo(), nullptr);
    }
}

TEST_F(MachineTest, AFailedQueryOfComponentsPasses) {
    answers.components = {{"a", "1.0"}};
    answers.options = {{"o", "1"}};
    open();
    driver->GetFirstComponentInfo();
    script.throw_error("GetComponentsMap", "gone");
    script.throw_error("GetOptionsMap", "gone");
    EXPECT_THROW(driver->GetFirstComponentInfo(), CZendrixError);
    EXPECT_THROW(driver->GetComponentInfo("z"), CZendrixError);
    EXPECT_THROW(driver->GetFirstOptionInfo(), CZendrixError);
    EXPECT_EQ(shown(driver->GetComponentInfo("a")), "a 1.0 3") << "what was known stays";
}

TEST_F(MachineTest, OptionsHaveStateZeroAndNoEntryOfTheDriver) {
    open();
    EXPECT_EQ(driver->GetFirstOptionInfo(), nullptr);
    answers.options = {{"scanning", "1"}, {"rotary", "yes"}};
    EXPECT_EQ(shown(driver->GetFirstOptionInfo()), "rotary yes 0");
    EXPECT_EQ(shown(driver->GetNextOptionInfo()), "scanning 1 0");
    EXPECT_EQ(driver->GetNextOptionInfo(), nullptr);
    EXPECT_EQ(driver->GetNextOptionInfo(), nullptr);
    EXPECT_EQ(script.take_calls(), (Lines{"GetOptionsMap()", "GetOptionsMap()"}));
}

TEST_F(MachineTest, AxesComeInTheOrderOfTheirNames) {
    EXPECT_EQ(driver->GetFirstAxisInfo(), nullptr);
    EXPECT_EQ(driver->GetNextAxisInfo(), nullptr);
    for (const char* name : {"z", "x", "c"}) add_axis(name);
    open();
    Lines names;
    for (auto* info = driver->GetFirstAxisInfo(); info; info = driver->GetNextAxisInfo()) {
        names.push_back(info->name);
    }
    EXPECT_EQ(names, (Lines{"c", "x", "z"}));
    EXPECT_EQ(driver->GetNextAxisInfo(), nullptr);
    EXPECT_EQ(driver->GetAxisInfo("x")->name, "x");
    EXPECT_EQ(driver->GetAxisInfo("X"), nullptr);
    EXPECT_TRUE(script.take_calls().empty());
}

TEST_F(MachineTest, AWalkGoesOnWhileAxesAreAdded) {
    add_axis("a");
    add_axis("c");
    open();
    EXPECT_EQ(driver->GetFirstAxisInfo()->name, "a");
    const MMachAxisInfo* a = driver->GetAxisInfo("a");
    add_axis("b");
    add_axis("d");
    script.fire_async("capabilities changed");
    EXPECT_EQ(driver->GetAxisInfo("a"), a) << "records never move";
    EXPECT_EQ(driver->GetNextAxisInfo()->name, "c");
    EXPECT_EQ(driver->GetNextAxisInfo()->name, "d");
    driver->Close();
    EXPECT_EQ(driver->GetFirstAxisInfo(), a) << "the picture stays";
}

TEST_F(MachineTest, AnAxisValueComesFromTheMachine) {
    answers.values = {{"x", 1.25}};
    open();
    EXPECT_EQ(driver->GetAxisValue("x"), 1.25);
    EXPECT_EQ(script.take_calls(), Lines{"Get(\"x\")"});
}

TEST_F(MachineTest, AnUnknownValueIsNotANumber) {
    EXPECT_TRUE(is_unknown(driver->GetAxisValue("x")));
    EXPECT_TRUE(script.calls().empty());
    open();
    answers.values = {{"x", 1.25}};
    script.answer_false("Get", 1);
    EXPECT_TRUE(is_unknown(driver->GetAxisValue("x")));
    EXPECT_EQ(new_log_lines(), Lines{"M2ZendrixMachAbstract::GetAxisValue(): Get(x, ..) failed"});
    script.throw_error("Get", "invalid axis", 1);
    EXPECT_TRUE(is_unknown(driver->GetAxisValue("x")));
    EXPECT_EQ(new_log_lines(),
              Lines{"M2ZendrixMachAbstract::GetAxisValue(): Get(x, ..) failed: invalid axis"});
    script.throw_foreign("Get", 1);
    EXPECT_THROW(driver->GetAxisValue("x"), scripted::Foreign);
}

TEST_F(MachineTest, ACachedValueNeedsNoMachine) {
    driver->m_cachedAxes.add("x");
    EXPECT_EQ(driver->GetAxisValue("x"), 0.0);
    answers.values = {{"x", 4.5}};
    open();
    EXPECT_EQ(driver->GetAxisValue("x"), 4.5);
    driver->Close();
    script.take_calls();
    EXPECT_EQ(driver->GetAxisValue("x"), 4.5);
    EXPECT_TRUE(is_unknown(driver->GetAxisValue("y")));
    EXPECT_TRUE(script.calls().empty());
}

TEST_F(MachineTest, InitializedUnlessTheMachineSaysZero) {
    EXPECT_TRUE(driver->IsInitialized()) << "not-a-number is not zero";
    open();
    answers.values = {{"init", 0.0}};
    EXPECT_FALSE(driver->IsInitialized());
    answers.values = {{"init", 1.0}};
    EXPECT_TRUE(driver->IsInitialized());
    EXPECT_EQ(script.take_calls(), (Lines{"Get(\"init\")", "Get(\"init\")"}));
    script.answer_false("Get");
    EXPECT_TRUE(driver->IsInitialized());
    EXPECT_EQ(new_log_lines().size(), 1U);
}

}  // namespace
