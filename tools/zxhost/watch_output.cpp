#include "watch_output.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>

#include "number_text.h"
#include "table.h"

namespace zxhost {
namespace {

using Axes = std::vector<AxisLabel>;

// A field of CSV as every reader takes it: quoted if it needs to be.
std::string field(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + "\"";
}

// Gathers the lines of a handful of records, for one write.
class Lines : public WatchOutput {
public:
    explicit Lines(std::ostream& out) : m_out(out) {}

    void flush() override {
        m_out.write(m_text.data(), static_cast<std::streamsize>(m_text.size()));
        m_out.flush();
        m_text.clear();
    }

protected:
    template <class... Arguments>
    void put(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
        fmt::format_to(std::back_inserter(m_text), format, std::forward<Arguments>(arguments)...);
    }

private:
    std::ostream& m_out;
    std::string m_text;
};

class Csv : public Lines {
public:
    Csv(std::ostream& out, const Axes& axes) : Lines(out) {
        put("record,seconds [s]");
        for (const AxisLabel& axis : axes) put(",{}", field(head_text(axis)));
        put("\n");
    }

    void add(const WatchRecord& record) override {
        put("{},{:.4f}", record.number, record.seconds);
        for (const double value : record.values) put(",{}", value);
        put("\n");
    }
};

// Columns of one width, so that lines can be read as they come.
class Columns : public Lines {
public:
    Columns(std::ostream& out, const Axes& axes) : Lines(out) {
        put("{:>8}  {:>10}", "record", "seconds");
        for (const AxisLabel& axis : axes) {
            const std::string head = printable(head_text(axis));
            m_widths.push_back(std::max<std::size_t>(head.size(), 12));
            put("  {:>{}}", head, m_widths.back());
        }
        put("\n");
    }

    void add(const WatchRecord& record) override {
        put("{:>8}  {:>10.3f}", record.number, record.seconds);
        for (std::size_t i = 0; i < record.values.size(); ++i)
            put("  {:>{}}", fixed_text(record.values[i], 4), m_widths[i]);
        put("\n");
    }

private:
    std::vector<std::size_t> m_widths;
};

class JsonLines : public WatchOutput {
public:
    JsonLines(std::ostream& out, Axes axes) : m_out(out), m_axes(std::move(axes)) {}

    void add(const WatchRecord& record) override {
        Json values = Json::object();
        for (std::size_t i = 0; i < record.values.size(); ++i) values[m_axes[i].name] = record.values[i];
        write_json_line(
            m_out, {{"record", record.number}, {"seconds", record.seconds}, {"values", std::move(values)}});
    }
    void flush() override { m_out.flush(); }

private:
    std::ostream& m_out;
    Axes m_axes;
};

// The latest values, drawn over the ones before. What isn't drawn is counted.
class LiveTable : public WatchOutput {
public:
    LiveTable(std::ostream& out, Axes axes) : m_out(out), m_axes(std::move(axes)) {}

    void add(const WatchRecord& record) override {
        m_values = record.values;
        m_number = record.number;
        m_seconds = record.seconds;
    }

    void flush() override {
        if (m_number == 0 || (m_is_drawn && m_seconds < m_drawn_at + seconds_between)) return;
        draw();
    }

    void end() override {
        if (m_number != 0) draw();
    }

private:
    static constexpr double seconds_between = 0.1;  // no eye is faster
    static constexpr std::size_t most_rows = 20;    // they fit on each terminal

    void draw() {
        std::ostringstream table;
        table << fmt::format("record {} after {:.1f} s, {:.1f} each second\n\n", m_number, m_seconds, rate());
        write_rows(table);
        std::string text = m_is_drawn ? fmt::format("\x1b[{}A", m_lines) : "";
        m_lines = 0;
        for (const char c : table.str()) {
            if (c == '\n') {
                text += "\x1b[K";  // of a longer line that stood there
                ++m_lines;
            }
            text += c;
        }
        m_out << text << std::flush;
        m_is_drawn = true;
        m_drawn_at = m_seconds;
    }

    double rate() const { return m_seconds > 0.0 ? static_cast<double>(m_number) / m_seconds : 0.0; }

    // Many axes stand side by side.
    void write_rows(std::ostream& out) const {
        const std::size_t blocks = (m_axes.size() + most_rows - 1) / most_rows;
        const std::size_t height = (m_axes.size() + blocks - 1) / blocks;
        std::vector<Column> columns;
        Json rows = Json::array();
        for (std::size_t row = 0; row < height; ++row) rows.push_back(Json::object());
        for (std::size_t block = 0; block < blocks; ++block) {
            const std::string suffix = std::to_string(block);
            columns.push_back({"axis" + suffix, "axis"});
            columns.push_back({"value" + suffix, "value", 4});
            columns.push_back({"unit" + suffix, "unit"});
            for (std::size_t row = 0; row < height; ++row) {
                const std::size_t i = block * height + row;
                const bool is_there = i < m_axes.size();
                rows[row]["axis" + suffix] = is_there ? m_axes[i].name : "";
                rows[row]["value" + suffix] = is_there ? Json(m_values[i]) : Json();
                rows[row]["unit" + suffix] = is_there ? m_axes[i].unit : "";
            }
        }
        write_table(out, columns, rows);
    }

    std::ostream& m_out;
    Axes m_axes;
    std::vector<double> m_values;
    std::size_t m_number = 0;
    double m_seconds = 0.0;
    bool m_is_drawn = false;
    double m_drawn_at = 0.0;
    std::size_t m_lines = 0;
};

}  // namespace

std::unique_ptr<WatchOutput> live_table(std::ostream& out, std::vector<AxisLabel> axes) {
    return std::make_unique<LiveTable>(out, std::move(axes));
}
std::unique_ptr<WatchOutput> record_lines(std::ostream& out, const std::vector<AxisLabel>& axes) {
    return std::make_unique<Columns>(out, axes);
}
std::unique_ptr<WatchOutput> record_csv(std::ostream& out, const std::vector<AxisLabel>& axes) {
    return std::make_unique<Csv>(out, axes);
}
std::unique_ptr<WatchOutput> record_json(std::ostream& out, std::vector<AxisLabel> axes) {
    return std::make_unique<JsonLines>(out, std::move(axes));
}

}  // namespace zxhost
