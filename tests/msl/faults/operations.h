// Every operation that reaches the file system, as one table.
#pragma once

#include <string>
#include <vector>

#include "temporary_directory.h"

namespace faults {

// Where an operation works:
//     file   "old" and CR LF
//     big    a line of 8191 bytes, CR LF, and two short ones: the CR is the last byte of a reader's first
//     buffer empty  nothing x.ini  a section with an entry sub    a directory with the file "in"
class Place {
public:
    Place();

    std::string path(const std::string& name = "") const { return m_directory.path(name); }

    // What differs from the beginning, as name="content" or, for long ones, name=size. Temporary files are
    // TMP.
    std::string changes() const;
    bool has_leftovers() const;
    std::string content(const std::string& name) const { return m_directory.content(name); }

    // The text with the directory as D, and the names of temporary files as TMP.
    std::string plain(std::string text) const;

private:
    const std::string m_closed_file_error;  // asked for before calls are counted
    TemporaryDirectory m_directory;
};

struct Operation {
    const char* name;
    // What its calls returned, and what came out of them.
    std::string (*run)(const Place& place);
    // Set if the file of this name must hold its old content or this one, whatever fails.
    const char* replaced = nullptr;
    const char* replacement = nullptr;
};

const std::vector<Operation>& operations();

}  // namespace faults
