// One data line of an answer, written word by word; its end is written when it goes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "append_number.h"
#include "serverline.h"
#include "tokens.h"

namespace zendrix::sim {

class DataLine {
public:
    DataLine(std::string& out, std::int64_t id) : m_out(out) { wire::append_data(m_out, id); }
    ~DataLine() { wire::append_end(m_out); }
    DataLine(const DataLine&) = delete;
    DataLine& operator=(const DataLine&) = delete;

    DataLine& word(std::string_view word) {
        m_out.append(" ").append(word);
        return *this;
    }
    DataLine& text(std::string_view text) {
        m_out += ' ';
        wire::append_quoted(m_out, text);
        return *this;
    }
    DataLine& number(double value) {
        append_number(m_out, value);
        return *this;
    }
    template <class Numbers>
    DataLine& numbers(const Numbers& values) {
        for (const double value : values) number(value);
        return *this;
    }

private:
    std::string& m_out;
};

}  // namespace zendrix::sim
