// Any text is decoded or refused, in both forms of the length and in place alike, without a byte outside its
// buffers; any bytes come back from their encoding.

#include <optional>
#include <string>
#include <vector>

#include "mbase64.h"
#include "recording_facilities.h"
#include "require.h"
#include "stl_utilities.h"
#include "target.h"

namespace {

// From one buffer to another, each of the very size that is needed.
std::optional<std::string> decode(std::string_view text, bool terminated) {
    const std::vector<char> source(text.begin(), text.end());
    std::vector<char> target(text.size() / 4 * 3 + (terminated ? 1 : 0));
    const std::ptrdiff_t count =
        MBase64_Decode(target.data(), source.data(), terminated ? text.size() : ~text.size());
    if (count < 0) return {};
    if (terminated) REQUIRE(target[static_cast<std::size_t>(count)] == '\0');
    return std::string(target.data(), static_cast<std::size_t>(count));
}

std::optional<std::string> decode_in_place(std::string_view text) {
    std::vector<char> buffer(text.begin(), text.end());
    const std::ptrdiff_t count = MBase64_Decode(buffer.data(), buffer.data(), ~text.size());
    if (count < 0) return {};
    return std::string(buffer.data(), static_cast<std::size_t>(count));
}

void decode_all_ways(std::string_view text) {
    const auto decoded = decode(text, false);
    REQUIRE(decode(text, true) == decoded);
    REQUIRE(decode_in_place(text) == decoded);
    std::string s(text);
    const bool ok = stl_decode_base64(s);
    if (!text.empty() && text.back() == '\0') return;  // NULs at the end are no part of the text there
    REQUIRE(ok == decoded.has_value());
    // A '=' in a wrong place may leave less than was decoded.
    REQUIRE(s == (ok ? decoded->substr(0, s.size()) : ""));
}

void encode_and_decode(std::string_view bytes) {
    std::string s(bytes);
    REQUIRE(stl_encode_base64(s));
    REQUIRE(s.size() == (bytes.size() + 2) / 3 * 4);
    std::vector<char> plain(MBase64_EncodedSize(bytes.size()));
    REQUIRE(MBase64_Encode(plain.data(), bytes.data(), bytes.size()) ==
            static_cast<std::ptrdiff_t>(s.size()));
    REQUIRE(s == plain.data());
    REQUIRE(decode(s, true) == std::string(bytes));
    REQUIRE(stl_decode_base64(s));
    REQUIRE(s == bytes);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    decode_all_ways(text_of(data, size));
    encode_and_decode(text_of(data, size));
    recording::reset();
    return 0;
}
