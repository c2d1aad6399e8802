// Why a shared library can't be loaded, told from the files.
#pragma once

#include <functional>
#include <string>

namespace os {

// One line that says which file is wrong, what was found and what was wanted; empty if nothing wrong is seen.
// `program` is the file of the program that loads it, and `find` tells the path of a library by its name
// alone, or nothing. What a library needs is looked for beside it first.
std::string library_fault(const std::string& file, const std::string& program,
                          const std::function<std::string(const std::string& name)>& find);

}  // namespace os
