// Calls as a host makes them. It is only ever compiled to read how they are made.
#include "mmachabstract.h"

std::string result_by_value(MMachAbstract& machine) { return machine.Reserved95(); }

bool slot_behind_the_destructor(MMachAbstract& machine) { return machine.Open(); }
