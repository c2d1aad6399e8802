// The adapter check over the system's own registry: below a key of the test's own, and below the true one
// where that belongs to the test run.
#include <gtest/gtest.h>

#include <cstdlib>

#include "TcpIpSpeeder.h"
#include "local_machine_key.h"
#include "recording_facilities.h"

namespace {

using Lines = std::vector<std::string>;

const std::string tree = "SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Interfaces";

class SpeederWin32 : public testing::Test {
protected:
    SpeederWin32() {
        recording::reset();
        recording::set_trace_level(5);
    }

    static Lines traced(int level) {
        Lines texts;
        for (const recording::TraceLine& line : recording::trace())
            if (line.level == level) texts.push_back(line.text);
        return texts;
    }

    // The addresses are those that stand in no network.
    static void add_adapters(RegistryKeys& keys, const std::string& prefix) {
        keys.make(tree + "\\" + prefix + "0 none");
        keys.set_texts(tree + "\\" + prefix + "1 fixed", "IPAddress", {"203.0.113.1", "198.51.100.1"});
        keys.set_texts(tree + "\\" + prefix + "1 fixed", "SubnetMask", {"255.255.255.128", "255.255.255.0"});
        keys.set_dword(tree + "\\" + prefix + "2 dhcp", "EnableDHCP", 1);
        keys.set_text(tree + "\\" + prefix + "2 dhcp", "IPAddress", "0.0.0.0");
        keys.set_text(tree + "\\" + prefix + "2 dhcp", "SubnetMask", "0.0.0.0");
        keys.set_text(tree + "\\" + prefix + "2 dhcp", "DhcpIPAddress", "203.0.113.129");
        keys.set_text(tree + "\\" + prefix + "2 dhcp", "DhcpSubnetMask", "255.255.255.128");
        keys.set_text(tree + "\\" + prefix + "2 dhcp", "TcpAckFrequency", "1");
    }

    void expect_found(const std::string& host, const std::string& name) {
        AdapterInfo info;
        AdapterKey key(os::system_registry());
        EXPECT_TRUE(m_speeder.GetNwAdapterForIp(host, info, key, true)) << host;
        EXPECT_EQ(info.key_name, name);
        EXPECT_EQ(info.key_path, tree + "\\" + name);
    }

    void check_adapters(RegistryKeys& keys, const std::string& prefix) {
        add_adapters(keys, prefix);
        expect_found("203.0.113.5", prefix + "1 fixed");
        expect_found(" 203.0.113.200\t", prefix + "2 dhcp");
        EXPECT_FALSE(m_speeder.HasMaxTCPIPSpeed("198.51.100.5")) << "further addresses are not looked at";
        EXPECT_FALSE(m_speeder.HasMaxTCPIPSpeed("203.0.113.5")) << "a missing value is the slow setting";
        EXPECT_EQ(recording::error_log(), Lines());
        EXPECT_FALSE(m_speeder.HasMaxTCPIPSpeed("203.0.113.200"));
        EXPECT_EQ(recording::error_log(),
                  Lines{"CTcpIpSpeeder::HasMaxTCPIPSpeed(): unable to set registry key: (HKLM\\" + tree +
                        "\\" + prefix + "2 dhcp) value TcpAckFrequency error #13"});
        for (const bool on : {true, false, true}) {
            for (const char* host : {"203.0.113.5", "203.0.113.200"}) {
                m_speeder.SetMaxTCPIPSpeed(host, on);
                EXPECT_EQ(m_speeder.HasMaxTCPIPSpeed(host), on) << host;
            }
        }
        EXPECT_EQ(traced(4).back(), "WinXP,WinVista, Win7 TCP/IP TcpAckFrequency speedup value 1");
        EXPECT_EQ(recording::error_log().size(), 1U);
    }

    CTcpIpSpeeder m_speeder;
};

TEST_F(SpeederWin32, AdaptersAreFoundAndSet) {
    LocalMachineKey local_machine;
    check_adapters(local_machine, "");
}

TEST_F(SpeederWin32, WithoutTheTreeTheSearchEnds) {
    const LocalMachineKey local_machine;
    EXPECT_FALSE(m_speeder.HasMaxTCPIPSpeed("203.0.113.5"));
    EXPECT_EQ(recording::error_log(),
              Lines{"CTcpIpSpeeder::GetNwAdapterForIp(): Unable to open registry key :(HKLM\\" + tree +
                    ")\t Error: 2"});
    EXPECT_EQ(traced(4),
              Lines{"CTcpIpSpeeder::HasMaxTCPIPSpeed(): no network adapter found for ip 203.0.113.5"});
}

TEST_F(SpeederWin32, WithoutAdaptersTheSearchEnds) {
    LocalMachineKey local_machine;
    local_machine.make(tree);
    EXPECT_FALSE(m_speeder.HasMaxTCPIPSpeed("203.0.113.5"));
    EXPECT_EQ(recording::error_log(), Lines());
    EXPECT_EQ(traced(4).front(), "RegEnumKeyEx no more items found. Lookup done for 1 keys.");
}

TEST_F(SpeederWin32, AnAddressThatIsNoTextEndsTheSearch) {
    LocalMachineKey local_machine;
    local_machine.set_text(tree + "\\a", "IPAddress", std::string(300, '1'));
    EXPECT_FALSE(m_speeder.HasMaxTCPIPSpeed("203.0.113.5"));
    EXPECT_EQ(recording::error_log(),
              Lines{"CTcpIpSpeeder::GetNwAdapterForIp(): Unable to open registry key!\n\n(HKLM\\" + tree +
                    "\\a) IPAddress: Error: 234"});
}

// Whoever runs this where the registry is the computer's own doesn't want to be changed.
TEST_F(SpeederWin32, TheTrueAdaptersAreFoundAndSet) {
    if (!std::getenv("ZX_PRIVATE_REGISTRY")) GTEST_SKIP() << "the registry isn't the test run's own";
    RegistryKeys keys(HKEY_LOCAL_MACHINE);
    const bool was_there = keys.has(tree);
    const std::string prefix = "zx_test_" + std::to_string(::GetCurrentProcessId()) + " ";
    check_adapters(keys, prefix);
    for (const char* name : {"0 none", "1 fixed", "2 dhcp"}) keys.remove(tree + "\\" + prefix + name);
    if (!was_there) keys.remove(tree);
}

}  // namespace
