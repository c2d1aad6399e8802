// The bare text of a line of the machine's protocol, as the client delivers it.
#pragma once

#include <string>

// Takes off a quote at the end, then the first of the words error, warning, event and data that stands at the
// start, with its blank, and then a quote at the start: `error "internal error"` gives `internal error`.
std::string bare_message(std::string text);
