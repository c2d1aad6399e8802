// The three exports, called by their plain C names.
#include "driver_fixture.h"
#include "mtrace.h"
#include "temporary_directory.h"

extern "C" {
bool IsProxy();
MMachAbstract* NewMMachAbstract(const std::string* name, const std::string* directory, MOutputChannel* output,
                                MMachNotifier* notifier);
int SetDefaultTracelevel(unsigned level);
}

namespace {

class PluginTest : public DriverTest {};

TEST_F(PluginTest, ANewDriverTouchesNothing) {
    EXPECT_FALSE(IsProxy());
    const std::string name = "m2zendrix";
    const std::string directory = "nowhere";
    std::unique_ptr<MMachAbstract> made(NewMMachAbstract(&name, &directory, &channel, &notifier));
    ASSERT_NE(made, nullptr);
    EXPECT_NE(dynamic_cast<M2ZendrixMachAbstract*>(made.get()), nullptr);
    EXPECT_FALSE(IsProxy());
    EXPECT_TRUE(script.calls().empty());
    made.reset();
    EXPECT_FALSE(IsProxy());
    EXPECT_EQ(channel.get_text(), "");
    EXPECT_EQ(notifier.count, 0);
}

TEST_F(PluginTest, TheHostsChannelAndNotifierAreTheDriversOwn) {
    const TemporaryDirectory files;
    files.file("m2zendrix.ini", "[connection]\nhost=localhost\n");  // whose adapter needs no warning
    const std::string name = "m2zendrix";
    const std::string directory = files.path();
    std::unique_ptr<MMachAbstract> made(NewMMachAbstract(&name, &directory, &channel, &notifier));
    ASSERT_TRUE(made->Open());
    script.fire_async("hello");
    EXPECT_EQ(notifier.count, 1);
    made->PollAsyncErrors();
    EXPECT_EQ(take_channel(), "0000\tevent \"hello\"\r\n");
    EXPECT_TRUE(made->Notify());
    EXPECT_EQ(notifier.count, 2);
}

TEST_F(PluginTest, TheTraceLevelIsThatOfTheChannelAndTheMaster) {
    SetDefaultTracelevel(3);
    EXPECT_TRUE(_MTrace_TestLevel("default", 3));
    EXPECT_FALSE(_MTrace_TestLevel("default", 4));
    EXPECT_TRUE(MTrace_TestMasterLevel(3));
    EXPECT_FALSE(MTrace_TestMasterLevel(4));
    SetDefaultTracelevel(0);
    EXPECT_FALSE(_MTrace_TestLevel("default", 1));
}

}  // namespace
