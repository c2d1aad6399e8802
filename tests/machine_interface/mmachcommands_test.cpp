#include "mmachcommands.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "moutputchannel.h"

namespace {

template <class Command>
concept Scanning = requires(Command& command, std::vector<double>& point) {
    command.GetNextScanPoint(point);
};

template <class Command>
concept HasClassName = requires {
    Command::ClassName();
};

// A command of the kind with what it leaves open.
template <class Command, bool scanning = Scanning<Command>>
class Open : public Command {
public:
    using Command::Command;
    bool IsDone() override { return true; }
    void Abort() override {}
};

template <class Command>
class Open<Command, true> : public Open<Command, false> {
public:
    using Open<Command, false>::Open;
    bool GetNextScanPoint(std::vector<double>&) override { return false; }
};

// An argument that every kind of command can be built from.
struct Anything {
    template <class T>
    operator const T&() const {
        static const T value{};
        return value;
    }
};

template <class Command>
const char* name_of() {
    MOutputChannel channel(7);
    if constexpr (std::is_constructible_v<Open<Command>, MOutputChannel*>) {
        return Open<Command>(&channel).GetCommandName();
    } else if constexpr (std::is_constructible_v<Open<Command>, MOutputChannel*, Anything>) {
        return Open<Command>(&channel, Anything()).GetCommandName();
    } else {
        return Open<Command>(&channel, Anything(), Anything()).GetCommandName();
    }
}

template <class Command>
const char* class_of() {
    if constexpr (HasClassName<Command>) return Command::ClassName();
    return nullptr;
}

struct Row {
    const char* name;
    const char* class_name;
    const char* expected_name;
    const char* expected_class;
    bool scanning;
};
#define ROW(command, text) \
    { name_of<command>(), class_of<command>(), text, #command, Scanning<command> }

TEST(MachCommands, EveryClassHasItsNameAndItsWord) {
    const Row rows[] = {
        ROW(MMachGetCommand, "get"),
        ROW(MMachInitCommand, "init"),
        ROW(MMachKeypadDisableCommand, "keypad disable"),
        ROW(MMachKeypadEnableCommand, "keypad enable"),
        ROW(MMachModuloCommand, "modulo"),
        ROW(MMachMoveCommand, "move"),
        ROW(MMachMovebaseCommand, "movebase"),
        ROW(MMachMovepolyCommand, "movepoly"),
        ROW(MMachMovecircleCommand, "movecircle"),
        ROW(MMachMoveconeCommand, "movecone"),
        ROW(MMachMovehomeCommand, "movehome"),
        ROW(MMachMovezeroCommand, "movezero"),
        ROW(MMachProbeChangeCommand, "probe change"),
        ROW(MMachProbeDefineCommand, "probe define"),
        ROW(MMachProbeDeleteCommand, "probe delete"),
        ROW(MMachProbeLoadCommand, "probe load"),
        ROW(MMachProbeOffsetCommand, "probe offset"),
        ROW(MMachProbeUnloadCommand, "probe unload"),
        ROW(MMachProbesystemDefineCommand, "probesystem define"),
        ROW(MMachProbesystemDeleteCommand, "probesystem delete"),
        ROW(MMachProbesystemLoadCommand, "probesystem load"),
        ROW(MMachProbesystemUnloadCommand, "probesystem unload"),
        ROW(MMachReceiveCommand, "receive"),
        ROW(MMachScancircleCommand, "scancircle"),
        ROW(MMachScanconeCommand, "scancone"),
        ROW(MMachScanCommand, "scan"),
        ROW(MMachScanbaseCommand, "scanbase"),
        ROW(MMachScandataCommand, "scandata"),
        ROW(MMachScanpointCommand, "scanpoint"),
        ROW(MMachScanpolyCommand, "scanpoly"),
        ROW(MMachSendCommand, "send"),
        ROW(MMachSetCommand, "set"),
        ROW(MMachSpinEnableCommand, "spin enable"),
        ROW(MMachSpinDisableCommand, "spin disable"),
        ROW(MMachWobbleCommand, "wobble"),
        ROW(MMachResetCommand, "reset"),
    };
    EXPECT_EQ(std::size(rows), 36U);
    for (const Row& row : rows) {
        EXPECT_STREQ(row.name, row.expected_name);
        const bool reset = std::string(row.expected_class) == "MMachResetCommand";
        EXPECT_STREQ(row.class_name, reset ? nullptr : row.expected_class);
        const std::string word = row.expected_name;
        EXPECT_EQ(row.scanning, word.starts_with("scan") && word != "scanbase" && word != "scandata") << word;
    }
}

// The command made of this argument.
template <class Command, class... Arguments>
Open<Command> made(const Arguments&... arguments) {
    return Open<Command>(nullptr, arguments...);
}

TEST(MachCommands, KeepTheirChannel) {
    MOutputChannel channel(7);
    EXPECT_EQ(Open<MMachMovehomeCommand>(&channel).m_pOutput, &channel);
    EXPECT_EQ(Open<MMachGetCommand>(&channel, std::vector<std::string>()).m_pOutput, &channel);
}

template <class Command, class Argument>
void expect_kept(Argument Command::*field, const Argument& argument) {
    Argument given = argument;
    const Open<Command> command(nullptr, given);
    given = Argument();  // a copy, not a reference
    EXPECT_EQ(command.*field, argument);
}

TEST(MachCommands, KeepCopiesOfAxesAndValues) {
    const AxisSet axes = {"z", "x"};
    expect_kept(&MMachInitCommand::m_axes, axes);
    expect_kept(&MMachModuloCommand::m_axes, axes);
    expect_kept(&MMachKeypadDisableCommand::m_axes, axes);
    expect_kept(&MMachKeypadEnableCommand::m_axes, axes);
    expect_kept(&MMachMovebaseCommand::m_axes, axes);
    expect_kept(&MMachScanbaseCommand::m_axes, axes);
    expect_kept(&MMachSpinDisableCommand::m_axes, axes);
    expect_kept(&MMachSpinEnableCommand::m_axes, {{"c", true}, {"hb", false}});
    expect_kept(&MMachSetCommand::m_values, {{"x", 1.5}});
    expect_kept(&MMachGetCommand::m_axes, {"z", "x", "z"});
    expect_kept(&MMachScandataCommand::m_names, {"x", "probe"});
}

bool same(const MMachAxisTarget& a, const MMachAxisTarget& b) {
    return a.value == b.value && a.has_flag == b.has_flag;
}

void expect_same(const AxisTargetMap& a, const AxisTargetMap& b) {
    EXPECT_TRUE(std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& left, const auto& right) {
        return left.first == right.first && same(left.second, right.second);
    }));
}

void expect_same(const MMachAxisTargets& a, const MMachAxisTargets& b) {
    expect_same(a.m_targets, b.m_targets);
    EXPECT_EQ(a.m_axes, b.m_axes);
    EXPECT_EQ(a.text1, b.text1);
    EXPECT_EQ(a.text2, b.text2);
    EXPECT_EQ(a.text3, b.text3);
    EXPECT_EQ(a.extra, b.extra);
}

void expect_same(const std::vector<AxisTargetMap>& a, const std::vector<AxisTargetMap>& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) expect_same(a[i], b[i]);
}

const AxisTargetMap some_targets = {{"x", {1.5, true}}, {"z", {-2.0, false}}};
const MMachAxisTargets some_axes = {some_targets, {"c"}, "one", "two", "three", 4};

TEST(MachCommands, KeepCopiesOfTargets) {
    expect_same(made<MMachMoveCommand>(some_axes).m_targets, some_axes);
    expect_same(made<MMachMovezeroCommand>(some_axes).m_targets, some_axes);
    expect_same(made<MMachScanCommand>(some_axes).m_targets, some_axes);
    expect_same(made<MMachScanpointCommand>(some_axes).m_targets, some_axes);
    expect_same(made<MMachProbeOffsetCommand>(some_targets).m_targets, some_targets);
    const std::vector<AxisTargetMap> points = {some_targets, {}, some_targets};
    expect_same(made<MMachMovepolyCommand>(points).m_points, points);
    expect_same(made<MMachScanpolyCommand>(points).m_points, points);
}

TEST(MachCommands, KeepCopiesOfCirclesAndCones) {
    const MMachCircle circle = {{1, 2, 3, 4, 5, 6, 7}, some_axes};
    const MMachCone cone = {{1, 2, 3, 4, 5, 6, 7}, some_axes, {8, 9}};
    const auto expect_circle = [&](const MMachCircle& kept) {
        EXPECT_TRUE(std::ranges::equal(kept.parameters, circle.parameters));
        expect_same(kept.axes, circle.axes);
    };
    const auto expect_cone = [&](const MMachCone& kept) {
        EXPECT_TRUE(std::ranges::equal(kept.parameters, cone.parameters));
        expect_same(kept.axes, cone.axes);
        EXPECT_TRUE(std::ranges::equal(kept.more, cone.more));
    };
    expect_circle(made<MMachMovecircleCommand>(circle).m_circle);
    expect_circle(made<MMachScancircleCommand>(circle).m_circle);
    expect_cone(made<MMachMoveconeCommand>(cone).m_cone);
    expect_cone(made<MMachScanconeCommand>(cone).m_cone);
    const MMachWobbleParameters wobble = {{1, 2, 3, 4, 5, 6}};
    EXPECT_TRUE(std::ranges::equal(made<MMachWobbleCommand>(wobble).m_parameters.values, wobble.values));
}

TEST(MachCommands, ResultsStartEmpty) {
    EXPECT_TRUE(made<MMachGetCommand>(std::vector<std::string>{"x"}).m_values.empty());
    const auto receive = made<MMachReceiveCommand>(std::string("block"));
    EXPECT_EQ(receive.m_name, "block");
    EXPECT_EQ(receive.m_data, "");
    const auto send = made<MMachSendCommand>(std::string("block"), std::string("a\0b", 3));
    EXPECT_EQ(send.m_name, "block");
    EXPECT_EQ(send.m_data, std::string("a\0b", 3));
}

class Reset : public MMachResetCommand {
public:
    using MMachResetCommand::MMachResetCommand;
    bool IsDone() override { return true; }
};

TEST(MachCommands, AResetMayBeAbortedWithoutEffect) {
    MOutputChannel channel(7);
    Reset reset(&channel);
    reset.Abort();
    EXPECT_TRUE(channel.is_empty());
}

}  // namespace
