// Lines as they come on standard input, from a pipe, a file or a plain terminal.
#pragma once

#include <ostream>
#include <string>

#include "line_input.h"

namespace zxhost {

class PlainInput : public LineInput {
public:
    // Borrows the stream, for prompt and news. Without `is_prompting` there is no prompt.
    PlainInput(std::ostream& out, bool is_prompting) : m_out(out), m_is_prompting(is_prompting) {}

    Got read(const Shell& shell, std::string& line) override;

private:
    bool fill(const Shell& shell);
    void prompt(const Shell& shell);
    void drop_long_line(const Shell& shell);

    std::ostream& m_out;
    bool m_is_prompting;
    bool m_has_ended = false;
    bool m_was_interrupted = false;
    std::string m_buffer;  // read and not yet handed out
};

}  // namespace zxhost
