#include <locale.h>
#include <stdlib.h>

#include "os/number.h"

namespace os {

double string_to_double(const char* text, char** end) {
    // Never freed: it is used until the last moment of the process.
    static const _locale_t c_locale = _create_locale(LC_ALL, "C");
    return _strtod_l(text, end, c_locale);
}

}  // namespace os
