#include <windows.h>

#include "hidden_files.h"

bool hide(const std::string& path) { return SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_HIDDEN) != 0; }
