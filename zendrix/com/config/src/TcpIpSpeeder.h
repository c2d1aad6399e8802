// Is the network adapter towards a machine set to acknowledge each segment at once? Many short requests and
// answers are slow where it waits.
//
// Looks for the adapter whose subnet holds the machine's address, in the registry or what stands for it.
// Nothing is thrown: what fails goes to the error log and the trace, and the answer is false. There is no
// state beside the registry; any thread may call.
#pragma once

#include <string>

#include "os/registry.h"

struct AdapterInfo {
    std::string ip;    // dotted address
    std::string mask;  // of its subnet
    std::string key_name;
    std::string key_path;  // below HKEY_LOCAL_MACHINE, with the name
};

// A key of the registry, closed at the end.
class AdapterKey {
public:
    explicit AdapterKey(os::Registry& registry) : m_registry(registry) {}
    ~AdapterKey() { close(); }
    AdapterKey(const AdapterKey&) = delete;
    AdapterKey& operator=(const AdapterKey&) = delete;

    // Closes what is open first. 0 or a system error number, as all of these.
    long open(const std::string& path, std::uint32_t access);
    void close();

    long subkey(std::uint32_t n, std::string& name) const;
    long read(const char* value, std::string& text) const;      // up to the first NUL
    long read(const char* value, std::uint32_t& number) const;  // which stays as it is without one
    long write(const char* value, std::uint32_t number);

private:
    os::Registry& m_registry;
    os::Registry::Key m_key = nullptr;
};

class CTcpIpSpeeder {
public:
    // The registry outlives the object.
    explicit CTcpIpSpeeder(os::Registry& registry = os::system_registry()) : m_registry(registry) {}

    // True if the adapter towards `host` acknowledges at once, or `host` is "localhost". A host that is no
    // dotted address answers false.
    bool HasMaxTCPIPSpeed(const std::string& host);

    // Switches it on or off; what that takes of rights is the system's business.
    void SetMaxTCPIPSpeed(const std::string& host, bool enable);

    // The first adapter in the registry's order whose subnet holds `host`; `key` stays open on it.
    bool GetNwAdapterForIp(const std::string& host, AdapterInfo& info, AdapterKey& key, bool read_only);

    // Does the adapter's subnet hold the address?
    static bool IsIpForAdapter(const AdapterInfo& info, const std::string& ip);

    // Has the text, without white space at its ends, the shape of a dotted address? Then `host` becomes that.
    // The numbers' size is not looked at.
    static bool MakeTargetIPAddress(std::string& host);

private:
    enum class Lookup { matches, passed_over, failed };

    Lookup look_at(AdapterInfo& info, AdapterKey& key, const std::string& target, bool read_only);
    bool is_supported(const char* function);
    bool is_before_5_1() { return !m_registry.version_is_at_least(5, 1); }
    bool find_adapter(const char* function, const std::string& host, AdapterInfo& info, AdapterKey& key,
                      bool read_only);

    os::Registry& m_registry;
};
