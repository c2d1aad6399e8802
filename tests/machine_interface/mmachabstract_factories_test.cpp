#include <gtest/gtest.h>

#include "bare_machine.h"

namespace {

using Make = MMachCommand* (*)(MMachAbstract&, MOutputChannel*);

struct Factory {
    const char* name;
    Make make;
};
#define FACTORY(name, ...)                                                                                   \
    {                                                                                                        \
#name, [](MMachAbstract & machine,                                                                   \
                  MOutputChannel *                                                                           \
                      channel) -> MMachCommand* { return machine.name(channel __VA_OPT__(, ) __VA_ARGS__); } \
    }

const AxisSet axes = {"x"};
const MMachAxisTargets targets;
const std::map<std::string, double> values;
const std::map<std::string, bool> switches;
const std::vector<AxisTargetMap> points;
const std::vector<std::string> names;

const Factory factories[] = {
    FACTORY(NewMMachGetCommand, names),
    FACTORY(NewMMachInitCommand, axes),
    FACTORY(NewMMachKeypadDisableCommand, axes),
    FACTORY(NewMMachKeypadEnableCommand, axes),
    FACTORY(Reserved109),
    FACTORY(NewMMachModuloCommand, axes),
    FACTORY(NewMMachMovebaseCommand, axes),
    FACTORY(NewMMachMoveCommand, targets),
    FACTORY(NewMMachMovecircleCommand, MMachCircle()),
    FACTORY(NewMMachMoveconeCommand, MMachCone()),
    FACTORY(NewMMachMovehomeCommand),
    FACTORY(NewMMachMovezeroCommand, targets),
    FACTORY(NewMMachReceiveCommand, "block"),
    FACTORY(NewMMachSendCommand, "block", "data"),
    FACTORY(NewMMachSetCommand, values),
    FACTORY(NewMMachScanCommand, targets),
    FACTORY(NewMMachSpinDisableCommand, axes),
    FACTORY(NewMMachSpinEnableCommand, switches),
    FACTORY(NewMMachProbesystemLoadCommand, "system", 1),
    FACTORY(NewMMachProbesystemUnloadCommand),
    FACTORY(NewMMachProbesystemDefineCommand, MMachProbesystemDefinition()),
    FACTORY(NewMMachProbesystemDeleteCommand, "system", 1),
    FACTORY(NewMMachProbeLoadCommand, 1, 2),
    FACTORY(NewMMachProbeDeleteCommand, 1, 2),
    FACTORY(NewMMachProbeDefineCommand, 1, 2, values),
    FACTORY(NewMMachProbeUnloadCommand),
    FACTORY(NewMMachProbeChangeCommand, 1, 2),
    FACTORY(NewMMachProbeOffsetCommand, AxisTargetMap()),
    FACTORY(NewMMachResetCommand),
    FACTORY(NewMMachScanbaseCommand, axes),
    FACTORY(NewMMachScancircleCommand, MMachCircle()),
    FACTORY(NewMMachScanconeCommand, MMachCone()),
    FACTORY(NewMMachScandataCommand, names),
    FACTORY(Reserved139),
    FACTORY(NewMMachScanpointCommand, targets),
    FACTORY(NewMMachMovepolyCommand, points),
    FACTORY(NewMMachScanpolyCommand, points),
    FACTORY(Reserved143),
    FACTORY(Reserved144),
    FACTORY(Reserved145),
    FACTORY(Reserved146),
    FACTORY(NewMMachWobbleCommand, MMachWobbleParameters()),
};

class DefaultFactories : public testing::Test {
protected:
    MOutputChannel m_drivers_channel{1};
    CountingNotifier m_notifier;
    BareMachine m_machine{&m_drivers_channel, &m_notifier};
};

TEST_F(DefaultFactories, KnowNoCommandAndSayItOnTheCommandsChannel) {
    EXPECT_EQ(std::size(factories), 36U + 6U);
    for (const Factory& factory : factories) {
        MOutputChannel channel(7);
        EXPECT_EQ(factory.make(m_machine, &channel), nullptr) << factory.name;
        EXPECT_TRUE(channel.has_error()) << factory.name;
        std::string text;
        channel.take_text(text, true);
        EXPECT_EQ(text, "0007\terror \"transaction: command unknown\"\r\n") << factory.name;
    }
    EXPECT_TRUE(m_drivers_channel.is_empty());
}

TEST_F(DefaultFactories, TheOneWithoutAChannelIsSilent) {
    EXPECT_EQ(m_machine.Reserved123(), nullptr);
    EXPECT_TRUE(m_drivers_channel.is_empty());
    EXPECT_FALSE(m_drivers_channel.has_error());
}

TEST_F(DefaultFactories, DoNotAskWhetherTheCommandIsEnabled) {
    m_machine.EnableCommand("MMachMovehomeCommand");
    MOutputChannel channel(7);
    EXPECT_EQ(m_machine.NewMMachMovehomeCommand(&channel), nullptr);
    EXPECT_TRUE(channel.has_error());
    channel.clear();
}

}  // namespace
