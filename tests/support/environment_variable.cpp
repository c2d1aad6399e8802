#include "environment_variable.h"

#include <utility>

#include "os/environment.h"

EnvironmentVariable::EnvironmentVariable(std::string name, const char* value)
    : m_name(std::move(name)), m_was_there(os::get_variable(m_name.c_str(), m_old)) {
    value ? set_variable(m_name, value) : remove_variable(m_name);
}

EnvironmentVariable::~EnvironmentVariable() {
    m_was_there ? set_variable(m_name, m_old) : remove_variable(m_name);
}
