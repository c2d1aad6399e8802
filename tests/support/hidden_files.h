// Files that the system hides.
#pragma once

#include <string>

// Makes what the system needs besides of a file whose name begins with a dot. True on success.
bool hide(const std::string& path);
