// A file that a verb leaves behind whole or not at all.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zxhost {

// Throws HostError (wrong usage) if there is something of this name already and `replace` doesn't allow it,
// if it is a directory, or if no file can be made beside it. Nothing stays of the attempt. For before long
// work.
void check_new_file(const std::string& target, bool replace);

// The bytes go to a file of another name in the same directory, which is on the disk when `verify` sees its
// path, and then takes the target's name. A device or a pipe that is there is written to as it stands. Throws
// HostError if that fails (wrong usage) or at Ctrl-C; what was begun is removed then, as it is if `verify`
// throws.
void write_new_file(const std::string& target, bool replace, std::string_view bytes,
                    const std::function<void(const std::string& path)>& verify = nullptr);

}  // namespace zxhost
