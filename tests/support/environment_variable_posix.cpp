#include <stdlib.h>

#include "environment_variable.h"

void set_variable(const std::string& name, const std::string& value) {
    setenv(name.c_str(), value.c_str(), 1);
}

void remove_variable(const std::string& name) { unsetenv(name.c_str()); }
