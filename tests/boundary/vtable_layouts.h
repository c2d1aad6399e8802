// The virtual tables of the classes in boundary_classes.cpp, as clang lays them out.
#pragma once

#include <map>
#include <string>
#include <vector>

enum class Abi { itanium, microsoft };

// Signatures without their class, as "bool Open()", in the order of the slots; the destructor is
// "destructor", once.
using Slots = std::vector<std::string>;

// By class name: the table of the first base, then those of further bases in order.
using Layouts = std::map<std::string, std::vector<Slots>>;

// Throws std::runtime_error with the compiler's own words if there is no clang or it can't compile.
Layouts vtable_layouts(Abi abi);
