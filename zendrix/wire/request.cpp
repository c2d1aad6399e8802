#include "request.h"

#include "numbers.h"

namespace wire {

void append_id(std::string& out, std::int64_t id) {
    for (std::int64_t limit = 1000; limit > 1 && id < limit; limit /= 10) out.push_back('0');
    append_integer(out, id);
    out.push_back('\t');
}

bool split_id(std::string_view line, std::int64_t& id, std::string_view& rest) noexcept {
    const std::string_view head = line.substr(0, 20);
    const std::size_t tab = head.find('\t');
    if (tab == std::string_view::npos || tab < 4 || !parse_integer(head.substr(0, tab), 0, max_id, id))
        return false;
    rest = line.substr(tab + 1);
    return true;
}

RequestWriter::RequestWriter(std::int64_t id, std::string_view words) : m_id(id) {
    append_id(m_line, id);
    m_line.append(words);
}

RequestWriter& RequestWriter::word(std::string_view word) {
    m_line.push_back(' ');
    m_line.append(word);
    return *this;
}

RequestWriter& RequestWriter::text(std::string_view text) {
    m_line.push_back(' ');
    append_quoted(m_line, text);
    return *this;
}

RequestWriter& RequestWriter::number(double value) {
    m_line.push_back(' ');
    append_shortest(m_line, value);
    return *this;
}

RequestWriter& RequestWriter::integer(std::int64_t value) {
    m_line.push_back(' ');
    append_integer(m_line, value);
    return *this;
}

RequestWriter& RequestWriter::target(std::string_view name, TargetForm form, double value) {
    if (form == TargetForm::end_of_point) return word(";");
    text(name);
    switch (form) {
        case TargetForm::absolute:
            m_line.push_back('=');
            append_shortest(m_line, value);
            break;
        case TargetForm::relative:
            m_line.append("+=");
            append_shortest(m_line, value);
            break;
        case TargetForm::lowest:
            m_line.append("=min");
            break;
        case TargetForm::highest:
            m_line.append("=max");
            break;
        case TargetForm::none:
        case TargetForm::end_of_point:
            break;
    }
    return *this;
}

const std::string& RequestWriter::finish() {
    m_line.append("\r\n");
    return m_line;
}

}  // namespace wire
