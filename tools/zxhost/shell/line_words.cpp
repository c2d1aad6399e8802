#include "line_words.h"

#include <algorithm>
#include <utility>

#include "exit_status.h"
#include "number_text.h"

namespace zxhost {
namespace {

constexpr std::string_view blanks = " \t";

bool is_blank(char c) { return blanks.find(c) != std::string_view::npos; }

void check_text(std::string_view line) {
    if (line.size() > longest_line)
        throw HostError(ExitStatus::WrongUsage,
                        "this line is longer than " + std::to_string(longest_line) + " bytes",
                        "is this a file with one verb on each line?");
    const auto odd = std::find_if(line.begin(), line.end(), [](char c) {
        return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7f;
    });
    if (odd != line.end())
        throw HostError(ExitStatus::WrongUsage,
                        "this is no line of text: it has the byte " + printable(std::string_view(&*odd, 1)),
                        "is this a file with one verb on each line?");
}

}  // namespace

LineWords split_line(std::string_view line) {
    LineWords result;
    bool in_word = false;
    const auto begin_word = [&](std::size_t at) {
        if (in_word) return;
        in_word = true;
        result.words.emplace_back();
        result.last_begin = at;
    };
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (result.open_quote) {
            if (c == result.open_quote)
                result.open_quote = 0;
            else
                result.words.back() += c;
        } else if (is_blank(c)) {
            in_word = false;
        } else if (c == '#' && !in_word) {
            result.in_comment = true;
            break;
        } else {
            begin_word(i);
            if (c == '\'' || c == '"')
                result.open_quote = c;
            else
                result.words.back() += c;
        }
    }
    if (!in_word) result.last_begin = line.size();
    return result;
}

std::vector<std::string> words_of(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    check_text(line);
    LineWords split = split_line(line);
    if (split.open_quote)
        throw HostError(ExitStatus::WrongUsage,
                        std::string("a quote is not closed: ") + split.open_quote + " is missing",
                        "close it, or put the name with this character into quotes of the other kind");
    if (!split.words.empty() && split.words[0] == "zxhost") split.words.erase(split.words.begin());
    return std::move(split.words);
}

std::string in_quotes(const std::string& word) {
    if (!word.empty() && word.find_first_of(" \t'\"") == std::string::npos && word[0] != '#') return word;
    std::string text;
    for (std::size_t start = 0; start <= word.size();) {
        // As much as one kind of quotes can hold.
        const std::size_t single = std::min(word.find('\'', start), word.size());
        const std::size_t twofold = std::min(word.find('"', start), word.size());
        const char quote = twofold >= single ? '"' : '\'';
        const std::size_t end = std::max(single, twofold);
        text += quote + word.substr(start, end - start) + quote;
        if (end == word.size()) break;
        start = end;
    }
    return text;
}

}  // namespace zxhost
