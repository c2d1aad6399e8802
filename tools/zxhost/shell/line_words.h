// The words of a line, as a shell divides them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zxhost {

struct LineWords {
    std::vector<std::string> words;
    char open_quote = 0;  // the quote that the line doesn't close; 0: none
    std::size_t last_begin =
        0;  // where the last word begins in the line; its end if a new word would begin there
    bool in_comment = false;
};

// Blanks and tabs divide words. '...' and "..." hold them together, also within a word; each holds the other
// kind. # at the front of a word begins a comment. A backslash is a character like any other, as file names
// need it.
LineWords split_line(std::string_view line);

// The words of a whole line, to run: a carriage return at its end and the program's name at its front are
// left out. Throws HostError (wrong usage) if it is too long, no text, or leaves a quote open.
std::vector<std::string> words_of(std::string_view line);

constexpr std::size_t longest_line = 1 << 16;

// The word so that a line gives it back; as it is if it needs no quotes.
std::string in_quotes(const std::string& word);

}  // namespace zxhost
