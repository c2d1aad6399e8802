#include <cstdlib>
#include <ctime>
#include <string>

#include "zipper_fixture.h"

namespace {

// What a variable was when it was first set.
struct Variable {
    explicit Variable(const char* variable) : name(variable), before(value_of(variable)) {}

    static std::string value_of(const char* name) {
        const char* const found = std::getenv(name);
        return found ? found : "";
    }

    const char* name;
    std::string before;
};

// An empty value takes the variable away.
void set(const Variable& variable, const std::string& value) {
    _putenv_s(variable.name, (value.empty() ? variable.before : value).c_str());
}

}  // namespace

void use_temporary_directory(const std::string& path) {
    static const Variable variable("TMP");
    set(variable, path);
}

void use_time_zone(const std::string& zone) {
    static const Variable variable("TZ");
    set(variable, zone);
    _tzset();
}
