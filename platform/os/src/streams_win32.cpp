#include <fcntl.h>
#include <io.h>
#include <stdio.h>

#include "os/streams.h"

namespace os {

void make_standard_streams_binary() {
    FILE* const streams[] = {stdin, stdout, stderr};
    for (FILE* const stream : streams) _setmode(_fileno(stream), _O_BINARY);
}

}  // namespace os
