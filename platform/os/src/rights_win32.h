// Who may do what with a file.
#pragma once

#include "windows_api.h"

namespace os {

// Gives an open file the list of rights of another. False, with the reason in GetLastError(), if it could
// not.
bool copy_rights(HANDLE file, const char* of);

}  // namespace os
