#include <stdlib.h>
#include <windows.h>

#include "environment_variable.h"

// The C library keeps a copy of its own, in which no value is empty.
void set_variable(const std::string& name, const std::string& value) {
    _putenv_s(name.c_str(), value.c_str());
    SetEnvironmentVariableA(name.c_str(), value.c_str());
}

void remove_variable(const std::string& name) {
    _putenv_s(name.c_str(), "");
    SetEnvironmentVariableA(name.c_str(), nullptr);
}
