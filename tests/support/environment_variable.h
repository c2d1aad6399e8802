// Variables of the test's own environment, which the programs that it starts take over.
#pragma once

#include <string>

void set_variable(const std::string& name, const std::string& value);
void remove_variable(const std::string& name);

// Has another value, or with null is not there, as long as the object lives.
class EnvironmentVariable {
public:
    EnvironmentVariable(std::string name, const char* value);
    ~EnvironmentVariable();
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    std::string m_name;
    std::string m_old;
    bool m_was_there;
};
