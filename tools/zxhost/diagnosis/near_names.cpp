#include "near_names.h"

#include <algorithm>
#include <vector>

namespace zxhost {
namespace {

std::string lower(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return result;
}

std::string without_blanks(std::string text) {
    std::erase_if(text, [](char c) { return std::string_view(" \t_-").find(c) != std::string_view::npos; });
    return text;
}

// A name this much longer or shorter is another one; so the work stays small for names of any length.
constexpr std::size_t most_edits = 2;

bool lengths_are_near(std::string_view a, std::string_view b) {
    return std::max(a.size(), b.size()) - std::min(a.size(), b.size()) <= most_edits;
}

}  // namespace

std::size_t edit_distance(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> cost(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) cost[i][0] = i;
    for (std::size_t j = 0; j <= b.size(); ++j) cost[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i)
        for (std::size_t j = 1; j <= b.size(); ++j) {
            cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1,
                                   cost[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
        }
    return cost[a.size()][b.size()];
}

Nearness nearness(std::string_view written, std::string_view known) {
    if (written == known) return Nearness::same;
    const std::string a = lower(written);
    const std::string b = lower(known);
    if (a == b) return Nearness::case_differs;
    const std::string bare_a = without_blanks(a);
    const std::string bare_b = without_blanks(b);
    if (bare_a == bare_b) return Nearness::blanks_differ;
    if (!lengths_are_near(bare_a, bare_b)) return Nearness::far;
    const std::size_t allowed = bare_b.size() > 4 ? most_edits : 1;
    return edit_distance(bare_a, bare_b) <= allowed ? Nearness::misspelt : Nearness::far;
}

}  // namespace zxhost
