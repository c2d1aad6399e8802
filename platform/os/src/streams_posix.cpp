#include "os/streams.h"

namespace os {

void make_standard_streams_binary() {}

}  // namespace os
