// The adapter check, over a registry in memory: every branch with its words.
#include "TcpIpSpeeder.h"

#include <gtest/gtest.h>

#include "errtrace.h"
#include "memory_registry.h"
#include "recording_facilities.h"

namespace {

using Lines = std::vector<std::string>;
using os::registry_read;
using os::registry_read_write;

const std::string tree = MemoryRegistry::tree;
const std::string get = "CTcpIpSpeeder::GetNwAdapterForIp";
const std::string has = "CTcpIpSpeeder::HasMaxTCPIPSpeed";
const std::string set = "CTcpIpSpeeder::SetMaxTCPIPSpeed";

class SpeederTest : public testing::Test {
protected:
    SpeederTest() { forget(5); }
    ~SpeederTest() override {
        EXPECT_EQ(registry.open_keys(), 0U) << "a key is left open";
        EXPECT_EQ(log(), Lines()) << "lines that no test asked for";
        EXPECT_EQ(recording::error_trace().size(), m_expectedTrace);
    }

    // Forgets all that was reported.
    void forget(int level = 5) {
        recording::reset();
        recording::set_trace_level(level);
        m_seen = 0;
    }
    Lines log() {
        Lines lines = recording::error_log();
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(m_seen));
        m_seen += lines.size();
        return lines;
    }
    Lines traced(int level) {
        Lines texts;
        for (const recording::TraceLine& line : recording::trace()) {
            EXPECT_EQ(line.channel, "default");
            if (line.level == level) texts.push_back(line.text);
        }
        return texts;
    }
    bool fast(const std::string& host) {
        EXPECT_EQ(log(), Lines()) << "lines that no test asked for";
        forget(5);
        return speeder.HasMaxTCPIPSpeed(host);
    }
    bool has_shape(std::string host) { return CTcpIpSpeeder::MakeTargetIPAddress(host); }

    MemoryRegistry registry;
    CTcpIpSpeeder speeder{registry};
    std::size_t m_expectedTrace = 0;

private:
    std::size_t m_seen = 0;
};

TEST_F(SpeederTest, LocalhostIsFastOnAnySystemAndTouchesNoKey) {
    registry.version = {4, 0};
    EXPECT_TRUE(fast("localhost"));
    speeder.SetMaxTCPIPSpeed("localhost", true);
    EXPECT_TRUE(registry.calls.empty());
    EXPECT_TRUE(recording::trace().empty());
}

TEST_F(SpeederTest, LocalhostInCapitalsIsANameLikeAnyOther) {
    EXPECT_FALSE(fast("LOCALHOST"));
    EXPECT_EQ(log(), Lines{get + ": MakeTargetIPAddress() failed for LOCALHOST"});
    EXPECT_EQ(traced(5), Lines{"'Maximum TCP/IP speed' skipped, host (LOCALHOST) is no regular IP address "
                               "(123.456.789.1)"});
    EXPECT_EQ(traced(4), Lines{has + "(): no network adapter found for ip LOCALHOST"});
    EXPECT_TRUE(registry.calls.empty());
}

TEST_F(SpeederTest, ADottedAddressHasFourGroupsOfOneToThreeDigits) {
    for (const char* good : {"1.2.3.4", "999.1.1.1", "000.000.000.000", " \t\n\v\f\r1.2.3.4 \r\n"})
        EXPECT_TRUE(has_shape(good)) << good;
    EXPECT_TRUE(recording::trace().empty());
}

TEST_F(SpeederTest, TheTrimmedTextIsTheTarget) {
    std::string host = "\t 10.0.0.1 \r\n";
    EXPECT_TRUE(CTcpIpSpeeder::MakeTargetIPAddress(host));
    EXPECT_EQ(host, "10.0.0.1");
    registry.add("a", "10.0.0.9", "255.255.255.0").values["TcpAckFrequency"] = MemoryRegistry::dword(1);
    EXPECT_TRUE(fast("  10.0.0.1\t"));
}

TEST_F(SpeederTest, AByteThatEndsNoGroupIsNoRegularAddress) {
    for (const std::string bad : {"a.b.c.d", "1234.1.1.1", "1..2.3", ".1.2.3", "1.2.3.x", "1.2 .3.4",
                                  "-1.2.3.4", "1,2,3,4", "12345678901234567890.1.1.1", "\xff"}) {
        forget(5);
        EXPECT_FALSE(has_shape(bad)) << bad;
        EXPECT_EQ(traced(5), Lines{"'Maximum TCP/IP speed' skipped, host (" + bad +
                                   ") is no regular IP address (123.456.789.1)"});
    }
    std::string with_nul("1.2.3.4\0", 8);
    EXPECT_FALSE(CTcpIpSpeeder::MakeTargetIPAddress(with_nul));
}

TEST_F(SpeederTest, AnotherNumberOfGroupsIsNoTripleDottedAddress) {
    for (const std::string bad : {"1.2.3", "1.2.3.4.5", "1.2.3.", "1.2.3.1234", "", " \t", "7"}) {
        forget(5);
        std::string host = bad;
        EXPECT_FALSE(CTcpIpSpeeder::MakeTargetIPAddress(host)) << bad;
        EXPECT_EQ(host, bad);
        EXPECT_EQ(traced(5), Lines{"'Maximum TCP/IP speed' skipped, host (" + bad +
                                   ") is no regular tripple dotted IP address (123.456.789.1)"});
    }
}

TEST_F(SpeederTest, ReportsShowTheHostAsItWasGiven) {
    EXPECT_FALSE(fast(" 1.2.3\t"));
    EXPECT_EQ(log(), Lines{get + ": MakeTargetIPAddress() failed for  1.2.3\t"});
    EXPECT_EQ(traced(5),
              Lines{"'Maximum TCP/IP speed' skipped, host ( 1.2.3\t) is no regular tripple dotted IP "
                    "address (123.456.789.1)"});
    EXPECT_FALSE(fast(" 1.2.3.4\t"));
    EXPECT_EQ(traced(4).back(), has + "(): no network adapter found for ip  1.2.3.4\t");
}

TEST_F(SpeederTest, BelowLevel5TheShapeIsNotSpokenOf) {
    recording::set_trace_level(4);
    EXPECT_FALSE(has_shape("x"));
    EXPECT_FALSE(has_shape("1.2.3"));
    EXPECT_TRUE(recording::trace().empty());
    recording::set_trace_level(3);
    EXPECT_FALSE(speeder.HasMaxTCPIPSpeed("1.2.3.4"));
    EXPECT_TRUE(recording::trace().empty());
}

bool is_for(const std::string& adapter, const std::string& mask, const std::string& ip) {
    return CTcpIpSpeeder::IsIpForAdapter({adapter, mask, "", ""}, ip);
}

TEST_F(SpeederTest, TheMaskSaysWhatMustAgree) {
    EXPECT_TRUE(is_for("192.168.2.1", "255.255.255.0", "192.168.2.10"));
    EXPECT_FALSE(is_for("192.168.2.1", "255.255.255.0", "192.168.3.10"));
    EXPECT_TRUE(is_for("192.168.2.1", "255.255.254.0", "192.168.3.10"));
    EXPECT_TRUE(is_for("10.1.1.130", "255.255.255.128", "10.1.1.255"));
    EXPECT_FALSE(is_for("10.1.1.130", "255.255.255.128", "10.1.1.127"));
    EXPECT_TRUE(is_for("0.0.0.0", "0.0.0.0", "1.2.3.4"));
    EXPECT_TRUE(is_for("..192.168..2.1", "255.255.255.0", "192.168.2.10")) << "empty parts are dropped";
    EXPECT_TRUE(is_for("1x.2.3.4", "255.255.255.0", " 1.2.3.9"))
        << "parts are read as far as they are numbers";
    EXPECT_FALSE(is_for("99999999999999999999.2.3.4", "255.255.255.0", "1.2.3.9"));
}

TEST_F(SpeederTest, AMissingPartOfTargetOrMaskIsNoMatch) {
    EXPECT_FALSE(is_for("0.0.0.0", "0.0.0.0", "1.2.3"));
    EXPECT_FALSE(is_for("0.0.0.0", "0.0.0.0", ""));
    EXPECT_FALSE(is_for("0.0.0.0", "0.0.0", "1.2.3.4"));
    EXPECT_FALSE(is_for("0.0.0.0", "", "1.2.3.4"));
}

TEST_F(SpeederTest, AnyNumberOfPartsWillDoIfAllAgree) {
    EXPECT_TRUE(is_for("10.0.0", "255.255.255", "10.0.0"));
    EXPECT_TRUE(is_for("1.2.3.4.5", "0.0.0.0.0", "9.9.9.9.9"));
    EXPECT_TRUE(is_for("", "", ""));
}

TEST_F(SpeederTest, AnotherNumberOfPartsIsReported) {
    EXPECT_FALSE(is_for("10.0.0", "255.255.255", "10.0.0.5"));
    EXPECT_EQ(log(),
              Lines{"10.0.0; Invalid vector size: adapter: ip=10.0.0, size=3, nwmask : ip=255.255.255, "
                    "size=3, adapter: ip=10.0.0.5, size=4CTcpIpSpeeder::IsIpForAdapter"});
    EXPECT_FALSE(is_for("%s%n.%d", "%s%n", "%n%s"));
    EXPECT_EQ(log().size(), 1U);
}

TEST_F(SpeederTest, AnAdapterOfThreePartsIsReportedAndPassedOver) {
    registry.add("odd", "10.0.0", "255.255.255");
    registry.add("good", "10.0.0.1", "255.255.255.0").values["TcpAckFrequency"] = MemoryRegistry::dword(1);
    EXPECT_TRUE(fast("10.0.0.5"));
    EXPECT_EQ(log().size(), 1U);
    registry.adapters.pop_back();
    EXPECT_FALSE(fast("10.0.0.5"));
    EXPECT_EQ(log().size(), 1U);
    EXPECT_EQ(traced(4), (Lines{"RegEnumKeyEx no more items found. Lookup done for 2 keys.",
                                has + "(): no network adapter found for ip 10.0.0.5"}));
}

class FindTest : public SpeederTest {
protected:
    bool find(const std::string& host, bool read_only = true) {
        AdapterKey key(registry);
        info = {};
        const bool found = speeder.GetNwAdapterForIp(host, info, key, read_only);
        // The tree's key is closed; the adapter's stays open for the caller.
        EXPECT_LE(registry.open_keys(), 1U);
        EXPECT_GE(registry.open_keys(), found ? 1U : 0U);
        return found;
    }

    AdapterInfo info;
};

TEST_F(FindTest, TheFirstAdapterInOrderWins) {
    registry.add("{A}", "10.0.0.1", "255.0.0.0");
    registry.add("{B}", "192.168.2.1", "255.255.0.0");
    registry.add("{C}", "192.168.2.2", "255.255.255.0");
    ASSERT_TRUE(find("192.168.2.10"));
    EXPECT_EQ(info.ip, "192.168.2.1");
    EXPECT_EQ(info.mask, "255.255.0.0");
    EXPECT_EQ(info.key_name, "{B}");
    EXPECT_EQ(info.key_path, tree + "\\{B}");
    EXPECT_TRUE(recording::trace().empty());
}

TEST_F(FindTest, AnAdapterOfZeroesMatchesEverythingAndEndsTheSearch) {
    registry.add("zero", "0.0.0.0", "0.0.0.0");
    registry.add("good", "10.0.0.1", "255.0.0.0");
    ASSERT_TRUE(find("10.0.0.5"));
    EXPECT_EQ(info.key_name, "zero");
}

TEST_F(FindTest, KeysAreOpenedForWhatIsAsked) {
    registry.add("a", "10.0.0.1", "255.0.0.0");
    EXPECT_TRUE(find("10.0.0.5", true));
    EXPECT_TRUE(find("10.0.0.5", false));
    EXPECT_EQ(registry.access_asked,
              (std::vector<std::uint32_t>{os::registry_enumerate, os::registry_read, os::registry_enumerate,
                                          os::registry_read_write}));
}

TEST_F(FindTest, WithDhcpOnlyItsPairCounts) {
    auto& adapter = registry.add("a", "10.0.0.1", "255.0.0.0");
    adapter.values["EnableDHCP"] = MemoryRegistry::dword(7);
    EXPECT_FALSE(find("10.0.0.5"));
    adapter.values["DhcpIPAddress"] = MemoryRegistry::text("172.16.0.1");
    EXPECT_FALSE(find("172.16.0.5")) << "the mask is missing";
    adapter.values["DhcpSubnetMask"] = MemoryRegistry::text("255.255.0.0");
    EXPECT_TRUE(find("172.16.0.5"));
    EXPECT_EQ(info.ip, "172.16.0.1");
    EXPECT_FALSE(find("10.0.0.5"));
    adapter.values["EnableDHCP"] = MemoryRegistry::dword(0);
    EXPECT_TRUE(find("10.0.0.5"));
    adapter.values["EnableDHCP"] = MemoryRegistry::dword(1);
    registry.fail("query", "EnableDHCP", 5);
    EXPECT_TRUE(find("10.0.0.5")) << "a failed read counts as 0";
}

TEST_F(FindTest, ADhcpSwitchThatIsNoNumberCountsAsNone) {
    registry.add("a", "10.0.0.1", "255.0.0.0").values["EnableDHCP"] = MemoryRegistry::text("1");
    EXPECT_TRUE(find("10.0.0.5"));
}

TEST_F(FindTest, AnAdapterWithoutAddressOrMaskIsPassedOver) {
    registry.add("no address", "", "").values.erase("IPAddress");
    registry.add("no mask", "10.0.0.1", "").values.erase("SubnetMask");
    registry.add("good", "10.0.0.2", "255.0.0.0");
    ASSERT_TRUE(find("10.0.0.5"));
    EXPECT_EQ(info.key_name, "good");
    EXPECT_EQ(info.ip, "10.0.0.2");
}

TEST_F(FindTest, OfSeveralAddressesOnlyTheFirstCounts) {
    auto& adapter = registry.add("a", "", "");
    using namespace std::string_literals;
    adapter.values["IPAddress"] = {os::registry_strings,
                                   "10.0.0.1\0"
                                   "192.168.2.1\0\0"s};
    adapter.values["SubnetMask"] = {os::registry_strings,
                                    "255.0.0.0\0"
                                    "255.255.255.0\0\0"s};
    EXPECT_TRUE(find("10.0.0.5"));
    EXPECT_EQ(info.ip, "10.0.0.1");
    EXPECT_FALSE(find("192.168.2.10"));
}

TEST_F(FindTest, ATextWithoutItsNulEndsInTheBuffer) {
    auto& adapter = registry.add("a", "", "");
    adapter.values["IPAddress"] = {os::registry_string, "10.0.0.1"};
    adapter.values["SubnetMask"] = {os::registry_string, std::string("255.0.0.0") + std::string(250, ' ')};
    ASSERT_TRUE(find("10.0.0.5"));
    EXPECT_EQ(info.mask.size(), 259U);
    adapter.values["SubnetMask"].bytes += ' ';
    EXPECT_FALSE(find("10.0.0.5"));
    EXPECT_EQ(log(), Lines{get + "(): Unable to open registry key!\n\n(HKLM\\" + tree +
                           "\\a) SubnetMask: Error: 234"});
}

TEST_F(FindTest, WithoutAdaptersTheSearchEnds) {
    EXPECT_FALSE(find("10.0.0.5"));
    EXPECT_EQ(traced(4), Lines{"RegEnumKeyEx no more items found. Lookup done for 1 keys."});
}

TEST_F(FindTest, AHostThatIsNoAddressOpensNoKey) {
    EXPECT_FALSE(find("machine"));
    EXPECT_EQ(log(), Lines{get + ": MakeTargetIPAddress() failed for machine"});
    EXPECT_TRUE(registry.calls.empty());
}

TEST_F(FindTest, ATreeThatCannotBeOpenedEndsTheSearch) {
    registry.fail("open", "", 5);
    EXPECT_FALSE(find("10.0.0.5"));
    EXPECT_EQ(log(), Lines{get + "(): Unable to open registry key :(HKLM\\" + tree + ")\t Error: 5"});
}

TEST_F(FindTest, AListThatCannotBeReadEndsTheSearch) {
    registry.add("a", "172.16.0.1", "255.255.0.0");
    registry.add("b", "10.0.0.1", "255.0.0.0");
    registry.fail("enumerate", "1", 8);
    EXPECT_FALSE(find("10.0.0.5"));
    EXPECT_EQ(log(), Lines{get + "(): Unable to enum registry keys!: (HKLM\\" + tree + ")\t Error: 8"});
}

TEST_F(FindTest, ANameOf259BytesIsTooLong) {
    registry.add(std::string(258, 'n'), "172.16.0.1", "255.255.0.0");
    registry.add(std::string(259, 'n'), "10.0.0.1", "255.0.0.0");
    EXPECT_FALSE(find("10.0.0.5"));
    EXPECT_EQ(log(), Lines{get + "(): Unable to enum registry keys!: (HKLM\\" + tree + ")\t Error: 234"});
}

TEST_F(FindTest, AnAdapterThatCannotBeOpenedEndsTheSearch) {
    registry.add("a", "172.16.0.1", "255.255.0.0");
    registry.add("b", "10.0.0.1", "255.0.0.0");
    registry.add("c", "10.0.0.1", "255.0.0.0");
    registry.fail("open", "b", 5);
    EXPECT_FALSE(find("10.0.0.5", false));
    EXPECT_EQ(log(), Lines{get + "(): Unable to open registry key for writing!: (HKLM\\" + tree +
                           "\\b)\n\nError: 5"});
}

TEST_F(FindTest, AValueThatCannotBeReadEndsTheSearch) {
    registry.add("a", "10.0.0.1", "255.0.0.0");
    registry.fail("query", "SubnetMask", 6);
    EXPECT_FALSE(find("10.0.0.5"));
    EXPECT_EQ(log(), Lines{get + "(): Unable to open registry key!\n\n(HKLM\\" + tree +
                           "\\a) SubnetMask: Error: 6"});
    registry.fail("query", "IPAddress", 7);
    EXPECT_FALSE(find("10.0.0.5"));
    EXPECT_EQ(log(),
              Lines{get + "(): Unable to open registry key!\n\n(HKLM\\" + tree + "\\a) IPAddress: Error: 7"});
}

class SettingsTest : public SpeederTest {
protected:
    SettingsTest() { registry.add("a", "10.0.0.1", "255.0.0.0"); }

    MemoryRegistry::Value& value(const char* name) { return registry.adapters[0].values[name]; }
    std::uint32_t number(const char* name) {
        std::uint32_t result = 0;
        EXPECT_EQ(value(name).bytes.size(), sizeof result) << name;
        if (value(name).bytes.size() == sizeof result)
            std::memcpy(&result, value(name).bytes.data(), sizeof result);
        return result;
    }
    bool is_fast() { return fast("10.0.0.5"); }
    std::string cannot(const std::string& function, const char* name, long error) {
        return function + "(): unable to set registry key: (HKLM\\" + tree + "\\a) value " + name +
               " error #" + std::to_string(error);
    }
};

TEST_F(SettingsTest, ASystemBefore5IsNotSupported) {
    registry.version = {4, 90};
    {
        MErrTraceContext context("test");
        EXPECT_FALSE(is_fast());
    }
    const std::string reason = "(): Supports only Windows 2000, Windows XP, Windows 7 or higher OS!";
    EXPECT_EQ(recording::error_trace(), Lines{has + reason});
    EXPECT_EQ(log(), (Lines{has + reason, has + "(): GetOSInfo() failed"}));
    {
        MErrTraceContext context("test");
        speeder.SetMaxTCPIPSpeed("10.0.0.5", true);
    }
    EXPECT_EQ(log(), (Lines{set + reason, set + "(): GetOSInfo() failed"}));
    EXPECT_TRUE(registry.calls.empty());
    m_expectedTrace = 2;
}

TEST_F(SettingsTest, Version5LooksAtTheTicks) {
    registry.version = {5, 0};
    EXPECT_FALSE(is_fast()) << "a missing value is the slow setting";
    EXPECT_EQ(traced(4), Lines{"Win2000 TCP/IP TcpDelAckTicks speedup value 2"});
    value("TcpDelAckTicks") = MemoryRegistry::dword(1);
    value("TcpAckFrequency") = MemoryRegistry::dword(1);
    EXPECT_FALSE(is_fast());
    value("TcpDelAckTicks") = MemoryRegistry::dword(0);
    value("TcpAckFrequency") = MemoryRegistry::dword(2);
    EXPECT_TRUE(is_fast());
    EXPECT_EQ(traced(4), Lines{"Win2000 TCP/IP TcpDelAckTicks speedup value 0"});
}

TEST_F(SettingsTest, Version5SaysWhyItCannotTell) {
    registry.version = {5, 0};
    value("TcpDelAckTicks") = MemoryRegistry::text("0");
    EXPECT_FALSE(is_fast());
    EXPECT_EQ(log(), Lines{cannot(has, "TcpDelAckTicks", 13)});
    EXPECT_TRUE(traced(4).empty());
    registry.fail("query", "TcpDelAckTicks", 5);
    EXPECT_FALSE(is_fast());
    EXPECT_EQ(log(), Lines{cannot(has, "TcpDelAckTicks", 5)});
}

TEST_F(SettingsTest, LaterVersionsLookAtTheFrequency) {
    for (const auto& version : {std::pair{5U, 1U}, std::pair{6U, 0U}, std::pair{10U, 0U}}) {
        registry.version = version;
        registry.adapters[0].values.erase("TcpAckFrequency");
        EXPECT_FALSE(is_fast()) << "a missing value is the slow setting, and no failure";
        value("TcpAckFrequency") = MemoryRegistry::dword(0);
        EXPECT_FALSE(is_fast());
        value("TcpAckFrequency") = MemoryRegistry::dword(1);
        EXPECT_TRUE(is_fast());
        EXPECT_EQ(traced(4), (Lines{"WinXP,WinVista, Win7 TCP/IP TcpDelAckTicks speedup value 2",
                                    "WinXP,WinVista, Win7 TCP/IP TcpAckFrequency speedup value 1"}));
    }
}

TEST_F(SettingsTest, LaterVersionsReadTheTicksForTheTraceAlone) {
    value("TcpAckFrequency") = MemoryRegistry::dword(1);
    value("TcpDelAckTicks") = MemoryRegistry::dword(0x80000001U);
    EXPECT_TRUE(is_fast());
    EXPECT_EQ(traced(4)[0], "WinXP,WinVista, Win7 TCP/IP TcpDelAckTicks speedup value -2147483647");
    registry.fail("query", "TcpDelAckTicks", 5);
    EXPECT_TRUE(is_fast());
    EXPECT_EQ(traced(4)[0], "WinXP,WinVista, Win7 TCP/IP TcpDelAckTicks speedup value 2");
}

TEST_F(SettingsTest, AFrequencyThatIsNoNumberIsError13) {
    const Lines thirteen{cannot(has, "TcpAckFrequency", 13)};
    for (const std::string text : {"1", "", "one", "a long text"}) {
        value("TcpAckFrequency") = MemoryRegistry::text(text);
        EXPECT_FALSE(is_fast());
        EXPECT_EQ(log(), thirteen) << text;
    }
    value("TcpAckFrequency") = {os::registry_dword, "\x01"};
    EXPECT_FALSE(is_fast());
    EXPECT_EQ(log(), thirteen);
    registry.fail("query", "TcpAckFrequency", 5);
    EXPECT_FALSE(is_fast());
    EXPECT_EQ(log(), Lines{cannot(has, "TcpAckFrequency", 5)});
}

TEST_F(SettingsTest, TheFailedSearchIsToldWithTheFunctionThatAsked) {
    EXPECT_FALSE(fast("11.0.0.5"));
    EXPECT_EQ(traced(4).back(), has + "(): no network adapter found for ip 11.0.0.5");
    speeder.SetMaxTCPIPSpeed("11.0.0.5", true);
    EXPECT_EQ(traced(4).back(), set + "(): no network adapter found for ip 11.0.0.5");
}

TEST_F(SettingsTest, Version5SetsTheTicks) {
    registry.version = {5, 0};
    speeder.SetMaxTCPIPSpeed("10.0.0.5", true);
    EXPECT_EQ(number("TcpDelAckTicks"), 0U);
    EXPECT_TRUE(is_fast());
    forget(4);
    speeder.SetMaxTCPIPSpeed("10.0.0.5", false);
    EXPECT_EQ(number("TcpDelAckTicks"), 2U);
    EXPECT_EQ(traced(4), Lines{"Win2000 TCP/IP TcpDelAckTicks speedup value 2"});
    EXPECT_FALSE(registry.adapters[0].values.contains("TcpAckFrequency"));
    registry.fail("set", "TcpDelAckTicks", 5);
    speeder.SetMaxTCPIPSpeed("10.0.0.5", true);
    EXPECT_EQ(log(), Lines{cannot(set, "TcpDelAckTicks", 5)});
    EXPECT_EQ(traced(4).size(), 1U);
}

TEST_F(SettingsTest, LaterVersionsSetBoth) {
    for (const bool on : {true, false}) {
        forget(4);
        speeder.SetMaxTCPIPSpeed("10.0.0.5", on);
        EXPECT_EQ(number("TcpDelAckTicks"), 2U);
        EXPECT_EQ(number("TcpAckFrequency"), on ? 1U : 2U);
        EXPECT_EQ(traced(4), Lines{std::string("WinXP,WinVista, Win7 TCP/IP TcpAckFrequency speedup value ") +
                                   (on ? "1" : "2") + " set for key (HKLM\\" + tree + "\\a)"});
        EXPECT_EQ(is_fast(), on);
    }
    EXPECT_EQ(registry.access_asked[1], os::registry_read_write);
}

TEST_F(SettingsTest, AValueThatCannotBeSetDoesNotStopTheOther) {
    registry.fail("set", "TcpDelAckTicks", 5);
    speeder.SetMaxTCPIPSpeed("10.0.0.5", true);
    EXPECT_EQ(log(), Lines{cannot(set, "TcpDelAckTicks", 5)});
    EXPECT_EQ(number("TcpAckFrequency"), 1U);
    registry.fail("set", "TcpAckFrequency", 6);
    forget(4);
    CTcpIpSpeeder(registry).SetMaxTCPIPSpeed("10.0.0.5", true);
    EXPECT_EQ(recording::error_log(),
              (Lines{cannot(set, "TcpDelAckTicks", 5), cannot(set, "TcpAckFrequency", 6)}));
    EXPECT_TRUE(traced(4).empty());
    forget();
}

TEST_F(SpeederTest, ReportsNameTheirSource) {
    EXPECT_FALSE(speeder.HasMaxTCPIPSpeed("x"));
    EXPECT_EQ(recording::error_log_places()[0].source, "zendrix/com/config/src/TcpIpSpeeder");
    EXPECT_EQ(log().size(), 1U);
}

}  // namespace
