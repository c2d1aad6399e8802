// Where the driver's picture of the machine isn't the machine.
#pragma once

#include <string>
#include <vector>

#include "m2zendrixmachabstract.h"
#include "truth.h"

// One line a difference; empty if there is none. Every query that the driver answers is asked.
std::vector<std::string> differences(M2ZendrixMachAbstract& driver, const Truth& truth);
