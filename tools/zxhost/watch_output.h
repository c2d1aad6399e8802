// Where the records of an autoinfo go: a live table, lines of text, CSV or JSON.
#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "axis_labels.h"

namespace zxhost {

struct WatchRecord {
    std::size_t number;                 // from 1
    double seconds;                     // from the start of the watch to its arrival at this program
    const std::vector<double>& values;  // in the order of the axes
};

class WatchOutput {
public:
    virtual ~WatchOutput() = default;
    virtual void add(const WatchRecord& record) = 0;
    virtual void flush() = 0;  // after each handful
    virtual void end() {}      // after the last
};

// Each borrows the stream. All but the live table write every record.
std::unique_ptr<WatchOutput> live_table(std::ostream& out, std::vector<AxisLabel> axes);
std::unique_ptr<WatchOutput> record_lines(std::ostream& out, const std::vector<AxisLabel>& axes);
std::unique_ptr<WatchOutput> record_csv(std::ostream& out, const std::vector<AxisLabel>& axes);
std::unique_ptr<WatchOutput> record_json(std::ostream& out, std::vector<AxisLabel> axes);

}  // namespace zxhost
