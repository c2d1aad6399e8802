#include "TcpIpSpeeder.h"

#include <array>
#include <string_view>
#include <vector>

#include "errtrace.h"
#include "mtrace.h"
#include "stl_utilities.h"

// The master level alone decides here.
#define SPEEDER_TRACE(level, ...)                                   \
    do {                                                            \
        if (::MTrace_TestMasterLevel(level)) {                      \
            ::_MTrace_Location(source, __LINE__, "default", level); \
            ::_MTrace_Always(__VA_ARGS__);                          \
        }                                                           \
    } while (false)

namespace {

constexpr const char* source = "zendrix/com/config/src/TcpIpSpeeder";
constexpr const char* tree_path = "SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters\\Interfaces";
constexpr const char* delay_ticks = "TcpDelAckTicks";
constexpr const char* frequency = "TcpAckFrequency";
constexpr std::uint32_t slow = 2;  // of either value

constexpr std::uint32_t buffer_size = 259;
using Buffer = std::array<char, buffer_size + 1>;  // zeroed, so a text ends in it

bool is_digit(char c) { return c >= '0' && c <= '9'; }

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view white = " \t\n\v\f\r";
    const std::size_t begin = text.find_first_not_of(white);
    if (begin == text.npos) return {};
    return text.substr(begin, text.find_last_not_of(white) + 1 - begin);
}

// As "%ld" shows it where a long has 32 bits.
long shown(std::uint32_t number) { return static_cast<std::int32_t>(number); }

std::vector<std::string> parts_of(const std::string& address) {
    std::vector<std::string> parts;
    stl_string_tokenize(address, ".", parts);
    return parts;
}

long number_of(const std::string& part) {
    long number = 0;
    stl_string_to_long(part, number, false);
    return number;
}

void report_write_failure(const char* function, const AdapterInfo& info, const char* value, long error) {
    MERRLOG_REPORT(source, "%s(): unable to set registry key: (HKLM\\%s) value %s error #%ld", function,
                   info.key_path.c_str(), value, error);
}

// The value that governs the delay; one that isn't there leaves `number` as it is. The text of a failure
// speaks of setting here too.
bool read_setting(const char* function, const AdapterInfo& info, const AdapterKey& key, const char* value,
                  std::uint32_t& number) {
    const long error = key.read(value, number);
    if (error == os::registry_done || error == os::registry_no_value) return true;
    report_write_failure(function, info, value, error);
    return false;
}

bool write_setting(const char* function, const AdapterInfo& info, AdapterKey& key, const char* value,
                   std::uint32_t number) {
    const long error = key.write(value, number);
    if (error != os::registry_done) report_write_failure(function, info, value, error);
    return error == os::registry_done;
}

}  // namespace

long AdapterKey::open(const std::string& path, std::uint32_t access) {
    close();
    const long error = m_registry.open_key(path.c_str(), access, m_key);
    if (error != os::registry_done) m_key = nullptr;
    return error;
}

void AdapterKey::close() {
    if (m_key) m_registry.close_key(m_key);
    m_key = nullptr;
}

long AdapterKey::subkey(std::uint32_t n, std::string& name) const {
    Buffer buffer{};
    std::uint32_t size = buffer_size;
    const long error = m_registry.enumerate_key(m_key, n, buffer.data(), size);
    if (error == os::registry_done) name = buffer.data();
    return error;
}

long AdapterKey::read(const char* value, std::string& text) const {
    Buffer buffer{};
    std::uint32_t size = buffer_size;
    std::uint32_t type = 0;
    const long error = m_registry.query_value(m_key, value, type, buffer.data(), size);
    if (error == os::registry_done) text = buffer.data();
    return error;
}

long AdapterKey::read(const char* value, std::uint32_t& number) const {
    std::uint32_t found = 0;
    std::uint32_t size = sizeof found;
    std::uint32_t type = os::registry_dword;
    const long error = m_registry.query_value(m_key, value, type, &found, size);
    const bool is_there = error == os::registry_done || error == os::registry_more_data;
    if (is_there && (type != os::registry_dword || size != sizeof found)) return os::registry_wrong_data;
    if (error == os::registry_done) number = found;
    return error;
}

long AdapterKey::write(const char* value, std::uint32_t number) {
    return m_registry.set_dword(m_key, value, number);
}

bool CTcpIpSpeeder::MakeTargetIPAddress(std::string& host) {
    const std::string_view address = trimmed(host);
    int digits = 0;
    int dots = 0;
    const auto group_is_good = [&digits] { return digits >= 1 && digits <= 3; };
    for (const char c : address) {
        if (is_digit(c)) {
            if (digits <= 3) ++digits;
        } else if (c == '.' && group_is_good()) {
            ++dots;
            digits = 0;
        } else {
            SPEEDER_TRACE(5,
                          "'Maximum TCP/IP speed' skipped, host (%s) is no regular IP address "
                          "(123.456.789.1)",
                          host.c_str());
            return false;
        }
    }
    if (dots != 3 || !group_is_good()) {
        SPEEDER_TRACE(5,
                      "'Maximum TCP/IP speed' skipped, host (%s) is no regular tripple dotted IP address "
                      "(123.456.789.1)",
                      host.c_str());
        return false;
    }
    host = std::string(address);
    return true;
}

bool CTcpIpSpeeder::IsIpForAdapter(const AdapterInfo& info, const std::string& ip) {
    const std::vector<std::string> adapter = parts_of(info.ip);
    const std::vector<std::string> mask = parts_of(info.mask);
    const std::vector<std::string> target = parts_of(ip);
    const std::size_t n = adapter.size();
    if (n != 4 && n != target.size()) {
        MERRLOG_REPORT(source,
                       "%s; Invalid vector size: adapter: ip=%s, size=%d, nwmask : ip=%s, size=%d, adapter: "
                       "ip=%s, size=%dCTcpIpSpeeder::IsIpForAdapter",
                       info.ip.c_str(), info.ip.c_str(), static_cast<int>(n), info.mask.c_str(),
                       static_cast<int>(mask.size()), ip.c_str(), static_cast<int>(target.size()));
        return false;
    }
    if (mask.size() < n || target.size() < n) return false;
    for (std::size_t i = 0; i < n; ++i) {
        const long m = number_of(mask[i]);
        if ((m & number_of(adapter[i])) != (m & number_of(target[i]))) return false;
    }
    return true;
}

bool CTcpIpSpeeder::GetNwAdapterForIp(const std::string& host, AdapterInfo& info, AdapterKey& key,
                                      bool read_only) {
    constexpr const char* function = "CTcpIpSpeeder::GetNwAdapterForIp";
    std::string target = host;
    if (!MakeTargetIPAddress(target)) {
        MERRLOG_REPORT(source, "%s: MakeTargetIPAddress() failed for %s", function, host.c_str());
        return false;
    }
    AdapterKey tree(m_registry);
    if (const long error = tree.open(tree_path, os::registry_enumerate)) {
        MERRLOG_REPORT(source, "%s(): Unable to open registry key :(HKLM\\%s)\t Error: %ld", function,
                       tree_path, error);
        return false;
    }
    for (std::uint32_t n = 0;; ++n) {
        const long error = tree.subkey(n, info.key_name);
        if (error == os::registry_no_more_keys) {
            SPEEDER_TRACE(4, "RegEnumKeyEx no more items found. Lookup done for %d keys.",
                          static_cast<int>(n + 1));
            return false;
        }
        if (error != os::registry_done) {
            MERRLOG_REPORT(source, "%s(): Unable to enum registry keys!: (HKLM\\%s)\t Error: %ld", function,
                           tree_path, error);
            return false;
        }
        const Lookup lookup = look_at(info, key, target, read_only);
        if (lookup != Lookup::passed_over) return lookup == Lookup::matches;
    }
}

// One adapter of the tree, the one of `info.key_name`.
CTcpIpSpeeder::Lookup CTcpIpSpeeder::look_at(AdapterInfo& info, AdapterKey& key, const std::string& target,
                                             bool read_only) {
    constexpr const char* function = "CTcpIpSpeeder::GetNwAdapterForIp";
    info.key_path = std::string(tree_path) + "\\" + info.key_name;
    if (const long error = key.open(info.key_path, read_only ? os::registry_read : os::registry_read_write)) {
        MERRLOG_REPORT(source, "%s(): Unable to open registry key for writing!: (HKLM\\%s)\n\nError: %ld",
                       function, info.key_path.c_str(), error);
        return Lookup::failed;
    }
    std::uint32_t has_dhcp = 0;
    key.read("EnableDHCP", has_dhcp);
    const std::pair<const char*, std::string*> values[] = {
        {has_dhcp ? "DhcpIPAddress" : "IPAddress", &info.ip},
        {has_dhcp ? "DhcpSubnetMask" : "SubnetMask", &info.mask}};
    for (const auto& [name, text] : values) {
        const long error = key.read(name, *text);
        if (error == os::registry_no_value) return Lookup::passed_over;
        if (error != os::registry_done) {
            MERRLOG_REPORT(source, "%s(): Unable to open registry key!\n\n(HKLM\\%s) %s: Error: %ld",
                           function, info.key_path.c_str(), name, error);
            return Lookup::failed;
        }
    }
    return IsIpForAdapter(info, target) ? Lookup::matches : Lookup::passed_over;
}

bool CTcpIpSpeeder::is_supported(const char* function) {
    if (m_registry.version_is_at_least(5, 0)) return true;
    MERRTRACE_REPORT(source, "%s(): Supports only Windows 2000, Windows XP, Windows 7 or higher OS!",
                     function);
    _MErrTrace_Location(0, source, __LINE__);
    _MErrTrace_DumpContextToMErrLog("%s(): GetOSInfo() failed", function);
    return false;
}

bool CTcpIpSpeeder::find_adapter(const char* function, const std::string& host, AdapterInfo& info,
                                 AdapterKey& key, bool read_only) {
    if (GetNwAdapterForIp(host, info, key, read_only)) return true;
    SPEEDER_TRACE(4, "%s(): no network adapter found for ip %s", function, host.c_str());
    return false;
}

bool CTcpIpSpeeder::HasMaxTCPIPSpeed(const std::string& host) {
    constexpr const char* function = "CTcpIpSpeeder::HasMaxTCPIPSpeed";
    if (host == "localhost") return true;
    if (!is_supported(function)) return false;
    AdapterInfo info;
    AdapterKey key(m_registry);
    if (!find_adapter(function, host, info, key, true)) return false;
    std::uint32_t ticks = slow;
    if (is_before_5_1()) {
        if (!read_setting(function, info, key, delay_ticks, ticks)) return false;
        SPEEDER_TRACE(4, "Win2000 TCP/IP %s speedup value %ld", delay_ticks, shown(ticks));
        return ticks == 0;
    }
    constexpr const char* text = "WinXP,WinVista, Win7 TCP/IP %s speedup value %ld";
    key.read(delay_ticks, ticks);
    SPEEDER_TRACE(4, text, delay_ticks, shown(ticks));
    std::uint32_t each = slow;
    if (!read_setting(function, info, key, frequency, each)) return false;
    SPEEDER_TRACE(4, text, frequency, shown(each));
    return each == 1;
}

void CTcpIpSpeeder::SetMaxTCPIPSpeed(const std::string& host, bool enable) {
    constexpr const char* function = "CTcpIpSpeeder::SetMaxTCPIPSpeed";
    if (host == "localhost" || !is_supported(function)) return;
    AdapterInfo info;
    AdapterKey key(m_registry);
    if (!find_adapter(function, host, info, key, false)) return;
    if (is_before_5_1()) {
        const std::uint32_t ticks = enable ? 0 : slow;
        if (write_setting(function, info, key, delay_ticks, ticks))
            SPEEDER_TRACE(4, "Win2000 TCP/IP %s speedup value %ld", delay_ticks, shown(ticks));
        return;
    }
    write_setting(function, info, key, delay_ticks, slow);
    const std::uint32_t each = enable ? 1 : slow;
    if (write_setting(function, info, key, frequency, each))
        SPEEDER_TRACE(4, "WinXP,WinVista, Win7 TCP/IP %s speedup value %ld set for key (HKLM\\%s)", frequency,
                      shown(each), info.key_path.c_str());
}
