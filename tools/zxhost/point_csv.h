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
    ~PointCsv() { flush(); }
    PointCsv(const PointCsv&) = delete;
    PointCsv& operator=(const PointCsv&) = delete;

    void add(const std::vector<double>& point);

    // Hands on what was added. The file never ends within a line, whenever the program ends.
    void flush();

private:
    std::ostream& m_out;
    std::string m_lines;  // not yet handed on
};

}  // namespace zxhost
