// The standard streams as bytes.
#pragma once

namespace os {

// From now on standard input, output and error output pass bytes as they are, on every system: a line ends
// with LF alone. Call it before anything is read or written.
void make_standard_streams_binary();

}  // namespace os
