#include "clientlog.h"

#include "merrlog.h"

namespace serverdll {

void log_error(const char* file, int line, const std::string& text) {
    _MErrLog_Location(0, file, line);
    _MErrLog_Add("CZendrixCOM: %s", text.c_str());
}

}  // namespace serverdll
