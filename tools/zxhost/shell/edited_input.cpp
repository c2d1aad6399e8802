// Lines of a person at a terminal, with line editing, completion and history.
#include <histedit.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <cwchar>
#include <optional>

#include "interrupt.h"
#include "line_input.h"
#include "line_words.h"
#include "os/environment.h"
#include "os/terminal.h"

namespace zxhost {
namespace {

constexpr std::chrono::milliseconds longest_sleep{50};
constexpr int longest_history = 1000;

// Places that a text takes on the screen, taking each character for one.
std::size_t width(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xc0) != 0x80; }));
}

std::string common_front(const std::vector<std::string>& words) {
    std::string front = words.front();
    for (const std::string& word : words) {
        const auto differ = std::mismatch(front.begin(), front.end(), word.begin(), word.end());
        front.erase(differ.first, front.end());
    }
    return front;
}

class EditedInput : public LineInput {
public:
    explicit EditedInput(std::string history_file);
    ~EditedInput() override;

    Got read(const Shell& shell, std::string& line) override;
    void remember(const std::string& line) override;

private:
    static EditedInput& of(EditLine* edit);
    static char* prompt(EditLine* edit);
    static int next_character(EditLine* edit, wchar_t* character);

    bool wait();
    int read_character(wchar_t& character);
    void complete();
    unsigned char complete_word();  // with prompt and line off the screen
    void replace_word(std::string_view typed, const std::string& word);
    void show_above(const std::string& lines);
    std::string line_to_cursor() const;

    std::string m_history_file;
    EditLine* m_edit;
    History* m_history;
    const Shell* m_shell = nullptr;  // while read runs
    std::string m_prompt;
    bool m_was_interrupted = false;
};

EditedInput::EditedInput(std::string history_file)
    : m_history_file(std::move(history_file)),
      m_edit(el_init("zxhost", stdin, stdout, stderr)),
      m_history(history_init()) {
    HistEvent event;
    history(m_history, &event, H_SETSIZE, longest_history);
    history(m_history, &event, H_SETUNIQUE, 1);
    if (!m_history_file.empty()) history(m_history, &event, H_LOAD, m_history_file.c_str());
    el_set(m_edit, EL_CLIENTDATA, this);
    el_set(m_edit, EL_PROMPT, &EditedInput::prompt);
    el_set(m_edit, EL_EDITOR, "emacs");
    el_set(m_edit, EL_SIGNAL, 0);
    el_set(m_edit, EL_HIST, history, m_history);
    el_set(m_edit, EL_GETCFN, &EditedInput::next_character);
    el_set(m_edit, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    el_source(m_edit, nullptr);
}

EditedInput::~EditedInput() {
    history_end(m_history);
    el_end(m_edit);
}

LineInput::Got EditedInput::read(const Shell& shell, std::string& line) {
    m_shell = &shell;
    m_prompt = shell.prompt();
    m_was_interrupted = false;
    el_set(m_edit, EL_PREP_TERM, 1);  // from the prompt on, what is typed shows where it belongs
    int count = 0;
    const char* const text = el_gets(m_edit, &count);
    m_shell = nullptr;
    if (m_was_interrupted) {
        std::fputs("^C\n", stdout);
        std::fflush(stdout);
        return Got::Interrupt;
    }
    if (!text || count <= 0) {
        std::fputs("\n", stdout);
        std::fflush(stdout);
        return Got::End;
    }
    line = text;
    while (line.ends_with('\n') || line.ends_with('\r')) line.pop_back();
    return Got::Line;
}

void EditedInput::remember(const std::string& line) {
    HistEvent event;
    history(m_history, &event, H_ENTER, line.c_str());
    if (!m_history_file.empty()) history(m_history, &event, H_SAVE, m_history_file.c_str());
}

EditedInput& EditedInput::of(EditLine* edit) {
    void* data = nullptr;
    el_get(edit, EL_CLIENTDATA, &data);
    return *static_cast<EditedInput*>(data);
}

char* EditedInput::prompt(EditLine* edit) { return of(edit).m_prompt.data(); }

// The tabulator is taken here: a function added to the library's own keys is never freed by it.
int EditedInput::next_character(EditLine* edit, wchar_t* character) {
    EditedInput& input = of(edit);
    while (input.wait()) {
        const int count = input.read_character(*character);
        if (count != 1 || *character != L'\t') return count;
        input.complete();
    }
    return -1;
}

// Shows what the machine says until there is something to read; false when Ctrl-C came.
bool EditedInput::wait() {
    for (;;) {
        el_resize(m_edit);
        const std::string news = m_shell->news();
        const std::string new_prompt = m_shell->prompt();
        if (!news.empty()) {
            show_above(news);
            m_prompt = new_prompt;
            el_set(m_edit, EL_REFRESH);
        }
        const bool is_ready = os::wait_for_input(longest_sleep);
        if (InterruptMemory::take()) {
            m_was_interrupted = true;
            return false;
        }
        if (is_ready) return true;  // keys behind a Ctrl-C belong to the next line
    }
}

// One character of one or more bytes; those that are none are left out.
int EditedInput::read_character(wchar_t& character) {
    std::mbstate_t state{};
    for (;;) {
        char byte = 0;
        const auto count = os::read_input(&byte, 1);
        if (count <= 0) return static_cast<int>(count);
        const std::size_t done = std::mbrtowc(&character, &byte, 1, &state);
        if (done == 0 || done == 1) return 1;
        if (done == static_cast<std::size_t>(-1)) state = std::mbstate_t{};
    }
}

void EditedInput::complete() {
    show_above("");
    if (complete_word() == CC_ERROR) el_beep(m_edit);
    el_set(m_edit, EL_REFRESH);
}

unsigned char EditedInput::complete_word() {
    const std::string line = line_to_cursor();
    const Completions found = m_shell->complete(line);
    if (found.words.empty()) return found.file_names ? _el_fn_complete(m_edit, '\t') : CC_ERROR;
    const std::string typed = line.substr(found.begin);
    if (found.words.size() == 1) {
        replace_word(typed, found.words[0] + (found.words[0].ends_with('=') ? "" : " "));
        return CC_REFRESH;
    }
    const std::string front = common_front(found.words);
    if (front.size() > typed.size()) {
        replace_word(typed, front);
        return CC_REFRESH;
    }
    std::string list;
    for (const std::string& word : found.words) list += (list.empty() ? "" : "  ") + word;
    std::fprintf(stdout, "%s\n", list.c_str());
    return CC_REFRESH;
}

void EditedInput::replace_word(std::string_view typed, const std::string& word) {
    el_deletestr(m_edit, static_cast<int>(width(typed)));
    el_insertstr(m_edit, word.c_str());
}

// Takes prompt and line off the screen and writes there; the next refresh puts them below.
void EditedInput::show_above(const std::string& lines) {
    int columns = 0;
    el_get(m_edit, EL_GETTC, "co", &columns);
    const std::size_t before = width(m_prompt) + width(line_to_cursor());
    const std::size_t rows = before / static_cast<std::size_t>(std::max(columns, 1));
    if (rows > 0) std::fprintf(stdout, "\x1b[%zuA", rows);
    std::fprintf(stdout, "\r\x1b[J%s", lines.c_str());
    std::fflush(stdout);
}

std::string EditedInput::line_to_cursor() const {
    const LineInfo* const line = el_line(m_edit);
    return std::string(line->buffer, line->cursor);
}

}  // namespace

std::unique_ptr<LineInput> new_edited_input(const std::string& history_file) {
    std::string terminal;
    if (!os::get_variable("TERM", terminal) || terminal.empty() || terminal == "dumb") return nullptr;
    std::setlocale(LC_CTYPE, "");  // characters of more than one byte
    return std::make_unique<EditedInput>(history_file);
}

}  // namespace zxhost
