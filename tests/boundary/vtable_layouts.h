// The virtual tables of the classes in boundary_classes.cpp, as clang lays them out.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "clang_output.h"

// Signatures without their class, as "bool Open()", in the order of the slots; the destructor is
// "destructor", once.
using Slots = std::vector<std::string>;

// By class name: the table of the first base, then those of further bases in order.
using Layouts = std::map<std::string, std::vector<Slots>>;

// Throws as clang_output does.
Layouts vtable_layouts(Abi abi);
