// The driver's ini file.
#include "MIniData.h"
#include "drivertrace.h"
#include "errtrace.h"
#include "m2zendrixmachabstract.h"
#include "stl_utilities.h"

namespace {

constexpr const char* source = "m2zendrixmachabstract_config.cpp";
constexpr const char* function = "M2ZendrixMachAbstract::read_app_ini_file";

void trim_blanks(std::string& text) {
    text.erase(0, text.find_first_not_of(" \t"));
    text.erase(text.find_last_not_of(" \t") + 1);
}

bool exists(MIniData& ini) { return ini.IsOpen() && !ini.IsNew(); }

}  // namespace

void M2ZendrixMachAbstract::read_app_ini_file() {
    MErrTraceContext context(source);
    std::string path = m_directory + "\\" + m_name + ".ini";
    MIniData ini(path);
    if (!exists(ini)) {
        path = m_directory + "\\" + (m_name == "m2zendrix" ? "" : m_name + "\\") + "m2zendrix.ini";
        if (!ini.Open(path) || ini.IsNew()) {
            MErrTrace_ClearContext();
            return;
        }
    }
    DRIVER_TRACE(source, 3, "%s(): using configuration in %s", function, path.c_str());
    std::string value;
    if (ini.GetStringEntry("connection", "host", value)) take_host(context, value);
    if (ini.GetStringEntry("connection", "port", value)) {
        stl_string_strip(value);
        m_port = value;
    }
    if (ini.GetStringEntry("Settings", "cached_axes", value)) take_cached_axes(value);
}

void M2ZendrixMachAbstract::take_host(MErrTraceContext& context, const std::string& value) {
    m_host = value;
    if (value.find(".dll") == std::string::npos) {
        stl_string_strip(m_host);
        return;
    }
    stl_string_strip_comment(m_host);
    trim_blanks(m_host);
    if (!MReplaceEnvironmentVars(m_host, m_expandVariables)) {
        context.DumpToMErrLog(__LINE__, "%s(): MReplaceEnvironmentVars(%s) failed", function, m_host.c_str());
    }
}

void M2ZendrixMachAbstract::take_cached_axes(std::string value) {
    stl_string_strip(value);
    std::vector<std::string> names;
    stl_string_tokenize(value, ",", names);
    for (std::string& name : names) {
        trim_blanks(name);
        m_cachedAxes.add(name);
        DRIVER_TRACE(source, 3, "%s(): caching %s axis", function, name.c_str());
    }
}
