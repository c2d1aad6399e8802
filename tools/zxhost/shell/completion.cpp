#include "completion.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "line_words.h"

namespace zxhost {
namespace {

using Names = std::vector<std::string>;

bool contains(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

void append(Names& names, const Names& more, const std::string& end = "") {
    for (const std::string& name : more) names.push_back(name + end);
}

// The verb, or the part of it, that the words have reached.
CLI::App& reached(CLI::App& app, const Names& words) {
    CLI::App* at = &app;
    for (const std::string& word : words) {
        const auto parts =
            at->get_subcommands([&](const CLI::App* part) { return part->get_name() == word; });
        if (!parts.empty()) at = parts.front();
    }
    return *at;
}

Names parts_of(CLI::App& app) {
    Names names;
    for (const CLI::App* part : app.get_subcommands({})) names.push_back(part->get_name());
    return names;
}

// Options of a verb may stand behind it, those for all verbs too.
Names options_of(const CLI::App& app) {
    Names names;
    for (const CLI::App* at = &app; at; at = at->get_parent())
        for (const CLI::Option* option : at->get_options())
            for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    return names;
}

// What the option before takes as its value; empty if it is no option with one.
std::string value_name(const CLI::App& app, const std::string& word) {
    if (!word.starts_with("--")) return "";
    for (const CLI::App* at = &app; at; at = at->get_parent())
        if (const CLI::Option* const option = at->get_option_no_throw(word))
            return option->get_items_expected_max() == 0 ? "" : word;
    return "";
}

// What the argument behind this many others is called; the last one may go on.
std::string argument_name(const CLI::App& app, std::size_t given) {
    std::string name;
    for (const CLI::Option* option : app.get_options()) {
        if (!option->get_positional()) continue;
        name = option->get_name(true);
        if (given-- == 0) break;
    }
    return name;
}

// How many arguments of the verb the words hold behind its own name, options and their values left out.
std::size_t arguments_given(const CLI::App& verb, const Names& words) {
    const auto own = std::find(words.rbegin(), words.rend(), verb.get_name());
    const Names behind(own.base(), words.end());
    std::size_t count = 0;
    for (std::size_t i = 0; i < behind.size(); ++i) {
        const bool is_value = i > 0 && !value_name(verb, behind[i - 1]).empty();
        if (!is_value && !behind[i].starts_with("-")) ++count;
    }
    return count;
}

void add_names(Completions& found, const Vocabulary& vocabulary, const std::string& argument) {
    if (contains(argument, "TARGET") || contains(argument, "AXIS="))
        append(found.words, vocabulary.axes(), "=");
    else if (contains(argument, "AXIS"))
        append(found.words, vocabulary.axes());
    if (contains(argument, "PROBE") && !contains(argument, "=PROBE"))
        append(found.words, vocabulary.probes());
    if (contains(argument, "NAME")) append(found.words, vocabulary.probesystems());
    found.file_names = contains(argument, "FILE");
}

void add_values(Completions& found, const Vocabulary& vocabulary, const std::string& option) {
    if (option == "--format")
        found.words = Names{"table", "json", "csv"};
    else if (option == "--data" || option == "--axes")
        append(found.words, vocabulary.axes());
    else if (option == "--system")
        append(found.words, vocabulary.probesystems());
    else
        found.file_names = true;
}

// Keeps what goes on from `begun`, in order, each once.
void keep(Names& names, const std::string& begun) {
    std::erase_if(names, [&](const std::string& name) { return !name.starts_with(begun); });
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
}

}  // namespace

Completions complete(CLI::App& app, const Vocabulary& vocabulary, std::string_view line) {
    LineWords split = split_line(line);
    Completions found{split.last_begin, {}, false};
    if (split.in_comment) return found;
    std::string begun;
    if (split.last_begin < line.size()) {
        begun = split.words.back();
        split.words.pop_back();
    }
    CLI::App& verb = reached(app, split.words);
    const std::string option = split.words.empty() ? "" : value_name(verb, split.words.back());
    if (!option.empty()) {
        add_values(found, vocabulary, option);
    } else if (begun.starts_with("-")) {
        found.words = options_of(verb);
    } else {
        found.words = parts_of(verb);
        add_names(found, vocabulary, argument_name(verb, arguments_given(verb, split.words)));
    }
    keep(found.words, begun);
    for (std::string& word : found.words) word = in_quotes(word);
    return found;
}

}  // namespace zxhost
