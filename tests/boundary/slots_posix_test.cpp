#include <gtest/gtest.h>

#include <fstream>

#include "boundary_commands.h"
#include "vtable_layouts.h"

namespace {

// One signature a line, so that the number of a line is the number of its slot.
Slots read_slots(const std::string& class_name) {
    std::ifstream file(BOUNDARY_FOLDER "/slots/" + class_name + ".txt");
    Slots slots;
    for (std::string line; std::getline(file, line);) slots.push_back(line);
    return slots;
}

const Slots machinery = {"destructor"};
const Slots scanning_machinery = {"destructor", "bool GetNextScanPoint(std::vector<double> &)"};
const Slots face = {"destructor", "bool IsDone()", "void Abort()", "const char *GetCommandName()"};
const Slots scanning_face = {"destructor", "bool IsDone()", "void Abort()", "const char *GetCommandName()",
                             "bool GetNextScanPoint(std::vector<double> &)"};

Layouts expected_layouts() {
    Layouts expected;
    expected["MMachAbstract"] = {read_slots("MMachAbstract")};
    expected["M2ZendrixMachAbstract"] = expected["MMachAbstract"];
    expected["MMachNotifier"] = {read_slots("MMachNotifier")};
    expected["MOutputChannel"] = {read_slots("MOutputChannel")};
    expected["MMachCommand"] = {face};
    expected["M2ZendrixCommand"] = {machinery};
    expected["M2ZendrixGenericScanCommand"] = {scanning_machinery};
#define COMMAND(name, driver)                   \
    expected["MMach" #name "Command"] = {face}; \
    expected["M2Zendrix" #driver "Command"] = {face, machinery};
#define SCAN(name, driver)                               \
    expected["MMach" #name "Command"] = {scanning_face}; \
    expected["M2Zendrix" #driver "Command"] = {scanning_face, scanning_machinery};
    ALL_COMMANDS(COMMAND, SCAN)
    return expected;
}

void expect_layouts(Abi abi) {
    const Layouts layouts = vtable_layouts(abi);
    for (const auto& [name, expected] : expected_layouts()) {
        const auto found = layouts.find(name);
        ASSERT_NE(found, layouts.end()) << "no table of " << name;
        ASSERT_EQ(found->second.size(), expected.size()) << name;
        for (std::size_t table = 0; table < expected.size(); ++table) {
            EXPECT_EQ(found->second[table], expected[table]) << name << ", table " << table;
        }
    }
}

TEST(SlotsPosix, AreInTheirPlacesInTheItaniumAbi) { expect_layouts(Abi::linux_itanium); }

TEST(SlotsPosix, AreInTheirPlacesOnMinGW) { expect_layouts(Abi::mingw); }

TEST(SlotsPosix, AreInTheirPlacesInTheMicrosoftAbi) { expect_layouts(Abi::microsoft); }

TEST(SlotsPosix, TheTablesHaveTheirLengths) {
    EXPECT_EQ(read_slots("MMachAbstract").size(), 147U);
    EXPECT_EQ(read_slots("MOutputChannel").size(), 21U);
    EXPECT_EQ(read_slots("MMachNotifier").size(), 3U);
}

}  // namespace
