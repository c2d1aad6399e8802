// The driver's ini file.
#include "MIniData.h"
#include "configfile.h"
#include "drivertrace.h"
#include "errtrace.h"
#include "m2zendrixmachabstract.h"
#include "stl_utilities.h"

namespace {

constexpr const char* source = "m2zendrixmachabstract_config.cpp";
constexpr const char* function = "M2ZendrixMachAbstract::read_app_ini_file";

bool get(const MIniData& ini, const configfile::Key& key, std::string& value) {
    return ini.GetStringEntry(key.section, key.name, value);
}

}  // namespace

void M2ZendrixMachAbstract::read_app_ini_file() {
    MErrTraceContext context(source);
    std::string path = configfile::first_path(m_directory, m_name);
    MIniData ini(path);
    if (!ini.IsOpen() || ini.IsNew()) {
        path = configfile::second_path(m_directory, m_name);
        if (!ini.Open(path) || ini.IsNew()) {
            MErrTrace_ClearContext();
            return;
        }
    }
    DRIVER_TRACE(source, 3, "%s(): using configuration in %s", function, path.c_str());
    std::string value;
    if (get(ini, configfile::host, value)) take_host(context, value);
    if (get(ini, configfile::port, value)) {
        stl_string_strip(value);
        m_port = value;
    }
    if (get(ini, configfile::cached_axes, value)) take_cached_axes(value);
}

void M2ZendrixMachAbstract::take_host(MErrTraceContext& context, std::string value) {
    const bool is_library = configfile::is_library(value);
    configfile::strip_host(value);
    m_host = value;
    if (is_library && !MReplaceEnvironmentVars(m_host, m_expandVariables))
        context.DumpToMErrLog(__LINE__, "%s(): MReplaceEnvironmentVars(%s) failed", function, m_host.c_str());
}

void M2ZendrixMachAbstract::take_cached_axes(const std::string& value) {
    for (const std::string& name : configfile::axes_of(value)) {
        m_cachedAxes.add(name);
        DRIVER_TRACE(source, 3, "%s(): caching %s axis", function, name.c_str());
    }
}
