// Measured points as a CSV file, each point a whole line as it arrives.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace zxhost {

struct CsvHeader {
    std::string machine;               // name, revision and serial number of the machine
    std::string time;                  // of the measurement, ISO 8601
    std::string what;                  // the action, in words
    std::vector<std::string> columns;  // axis names; a unit is added to each
};

// Writes the header at once; `out` must outlive the object. Points keep the exact value of each number.
class PointCsv {
public:
    PointCsv(std::ostream& out, const CsvHeader& header);

    void add(const std::vector<double>& point);

private:
    std::ostream& m_out;
    std::string m_line;
};

}  // namespace zxhost
