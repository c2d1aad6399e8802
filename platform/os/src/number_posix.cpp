#include <locale.h>
#include <stdlib.h>

#include "os/number.h"

namespace os {

double string_to_double(const char* text, char** end) {
    // Never freed: it is used until the last moment of the process.
    static const locale_t c_locale = newlocale(LC_ALL_MASK, "C", locale_t{});
    return c_locale != locale_t{} ? strtod_l(text, end, c_locale) : strtod(text, end);
}

}  // namespace os
