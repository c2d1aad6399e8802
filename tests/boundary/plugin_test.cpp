// Calls through the shared classes into a plug-in that the system has loaded.
#include <gtest/gtest.h>

#include <memory>

#include "czendrixcom.h"
#include "mmachabstract.h"
#include "mmachnotifier.h"
#include "moutputchannel.h"
#include "os/library.h"

namespace {

class CountingNotifier : public MMachNotifier {
public:
    int HasNotification() override { return 0; }
    bool Notify() override { return ++m_notified > 0; }

    int m_notified = 0;
};

class BoundaryCalls : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_library.load(PLUGIN)) << m_library.error_text();
        using New = MMachAbstract*(const std::string*, const std::string*, MOutputChannel*, MMachNotifier*);
        New* const new_driver = m_library.function<New>("NewMMachAbstract");
        ASSERT_NE(new_driver, nullptr);
        const std::string name = "boundary";
        m_driver.reset(new_driver(&name, &name, &m_drivers_channel, &m_notifier));
        ASSERT_NE(m_driver, nullptr);
    }
    void TearDown() override {
        m_driver.reset();
        EXPECT_TRUE(m_drivers_channel.get_text().empty());
    }

    static std::string text_of(MOutputChannel& channel) {
        std::string text;
        channel.take_text(text, true);
        return text;
    }

    os::SharedLibrary m_library;
    MOutputChannel m_drivers_channel{7};
    CountingNotifier m_notifier;
    std::unique_ptr<MMachAbstract> m_driver;
};

TEST_F(BoundaryCalls, FactoriesWithoutAMachineAreSilentAndThoseTheDriverKeepsSayWhy) {
    MOutputChannel channel(8);
    EXPECT_EQ(m_driver->NewMMachMoveCommand(&channel, {}), nullptr);
    EXPECT_EQ(m_driver->NewMMachGetCommand(&channel, {"x"}), nullptr);
    m_driver->Close();
    EXPECT_EQ(m_driver->NewMMachScanCommand(&channel, {}), nullptr);
    EXPECT_EQ(text_of(channel), "");
    for (const auto factory : {&MMachAbstract::Reserved109, &MMachAbstract::Reserved139,
                               &MMachAbstract::Reserved143, &MMachAbstract::Reserved146}) {
        EXPECT_EQ((m_driver.get()->*factory)(&channel), nullptr);
        EXPECT_EQ(text_of(channel), "0008\terror \"transaction: command unknown\"\r\n");
    }
    EXPECT_EQ(m_driver->Reserved123(), nullptr);
    EXPECT_EQ(text_of(channel), "");
}

TEST_F(BoundaryCalls, TextsRecordsAndNumbersComeBackByValue) {
    EXPECT_EQ(m_driver->Reserved95(), "");
    EXPECT_EQ(m_driver->Reserved78().third, 0.0);
    EXPECT_TRUE(m_driver->GetSlots("", 0).empty());
    EXPECT_EQ(m_driver->GetDefaultConstant(), 5.0);
}

TEST_F(BoundaryCalls, NotificationsReachTheHost) {
    EXPECT_TRUE(m_driver->Notify());
    EXPECT_EQ(m_notifier.m_notified, 1);
    EXPECT_FALSE(m_driver->QueryNotifier());
}

TEST(BoundaryClient, IsOnePointerWide) { EXPECT_EQ(sizeof(CZendrixCOM), sizeof(void*)); }

}  // namespace
