// The first line of a connection: the server's hello.
#pragma once

#include <string>

#include "serverline.h"
#include "transport.h"

namespace serverdll {

// Reads the hello within its time. Gives the cause if there is no proper one, else an empty text. Bytes that
// came behind it stay in the splitter.
std::string read_hello(Transport& transport, wire::LineSplitter& splitter, const ClientOptions& options,
                       wire::Hello& hello);

// The first bytes of something that isn't the protocol, fit for a message.
std::string first_bytes(std::string_view bytes);

}  // namespace serverdll
