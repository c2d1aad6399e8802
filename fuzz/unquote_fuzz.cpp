// Any text is unquoted or left as it was; what was unquoted comes back from its quoting, and so does any
// text.

#include <string>

#include "recording_facilities.h"
#include "require.h"
#include "stl_utilities.h"
#include "target.h"

namespace {

void quote_and_unquote(const std::string& text) {
    std::string s = text;
    stl_string_quote_space(s);
    REQUIRE(s.size() <= 2 * text.size() + 2);
    REQUIRE(stl_string_unquote_space(s));
    REQUIRE(s == text);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(text_of(data, size));
    std::string s = text;
    const bool unquoted = stl_string_unquote_space(s);
    REQUIRE(unquoted ? s.size() <= text.size() : s == text);
    if (unquoted) quote_and_unquote(s);
    quote_and_unquote(text);
    recording::reset();
    return 0;
}
