// What can be made of a scan file: other forms, pictures, fitted shapes.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "table.h"

namespace CLI {
class App;
}

namespace zxhost {

struct ScanResults {
    std::string ply = "";  // files to write; empty for none
    std::string xyz = "";
    std::string picture = "";
    std::string shape = "";              // to fit; empty for none
    std::string deviations = "";         // file for those of the fit
    std::vector<std::string> axes = {};  // empty: x and y, and z where three are needed
};

// `results` must outlive the parsing.
void add_export_options(CLI::App& verb, ScanResults& results);   // --ply, --xyz
void add_picture_options(CLI::App& verb, ScanResults& results);  // --picture, --fit, --deviations, --axes
void add_axes_option(CLI::App& verb, ScanResults& results);

// Writes the files that are asked for, and returns an object that tells of them and of the fit. A cut scan is
// told on `err`. Throws HostError as the parts do.
Json make_results(const std::string& scan_file, const ScanResults& results, std::ostream& err);

// For a person: the files, and the fit as a table if there is one.
void write_results(std::ostream& out, const Json& result);

}  // namespace zxhost
