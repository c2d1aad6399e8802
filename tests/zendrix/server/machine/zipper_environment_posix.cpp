#include <cstdlib>
#include <ctime>

#include "zipper_fixture.h"

namespace {

void set(const char* name, const std::string& value) {
    if (value.empty()) {
        unsetenv(name);
    } else {
        setenv(name, value.c_str(), 1);
    }
}

}  // namespace

void use_temporary_directory(const std::string& path) { set("TMPDIR", path); }

void use_time_zone(const std::string& zone) {
    set("TZ", zone);
    tzset();
}
