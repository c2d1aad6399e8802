#include "scan_footer.h"

#include <fmt/format.h>
#include <zlib.h>

#include <charconv>
#include <system_error>

#include "number_text.h"

namespace zxhost {
namespace {

bool take(std::string_view& line, std::string_view text) {
    if (!line.starts_with(text)) return false;
    line.remove_prefix(text.size());
    return true;
}

template <class Number>
bool take_number(std::string_view& line, Number& number, int base) {
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number, base);
    if (error != std::errc()) return false;
    line.remove_prefix(static_cast<std::size_t>(end - line.data()));
    return true;
}

}  // namespace

std::string footer_text(const ScanFooter& footer) {
    return fmt::format("{}{}, {} points, crc32 {:08x}{}{}\n", footer_mark, footer.whole ? "whole" : "cut",
                       footer.points, footer.crc, footer.reason.empty() ? "" : ": ",
                       printable(footer.reason));
}

std::optional<ScanFooter> footer_from(std::string_view line) {
    ScanFooter footer;
    if (!take(line, footer_mark)) return std::nullopt;
    footer.whole = take(line, "whole, ");
    if (!footer.whole && !take(line, "cut, ")) return std::nullopt;
    if (!take_number(line, footer.points, 10) || !take(line, " points, crc32 ")) return std::nullopt;
    const std::size_t before = line.size();
    if (!take_number(line, footer.crc, 16) || before - line.size() != 8) return std::nullopt;
    if (take(line, ": ")) {
        footer.reason = line;
        line = {};
    }
    if (!line.empty() || (footer.whole && !footer.reason.empty())) return std::nullopt;
    return footer;
}

std::uint32_t crc_of(std::string_view bytes, std::uint32_t before) {
    return static_cast<std::uint32_t>(
        crc32_z(before, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

}  // namespace zxhost
