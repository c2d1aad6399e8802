// A client at a serial line, with nothing but the line.
#pragma once

#include "lineclient.h"

namespace zendrix::sim {

using SerialClient = LineClientOn<asio::serial_port>;

}  // namespace zendrix::sim
