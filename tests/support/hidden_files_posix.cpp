#include "hidden_files.h"

// The name is enough.
bool hide(const std::string& path) { return path.find("/.") != path.npos; }
