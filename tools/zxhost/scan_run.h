// What all scans share: the selection of what a point holds, and the points as they arrive.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "scan_writer.h"
#include "verb_host.h"

namespace zxhost {

// Where the points of a scan go.
struct PointSink {
    std::function<void(const std::vector<double>&)> add;
    std::function<void()> flush = nullptr;  // after each handful
};

// Fetches the points that wait in a scan of this class.
template <class Scan>
HostLoop::TakeResults draining(PointSink sink) {
    return [sink = std::move(sink), point = std::vector<double>()](MMachCommand& command) mutable {
        bool any = false;
        for (; static_cast<Scan&>(command).GetNextScanPoint(point); any = true) sink.add(point);
        if (any && sink.flush) sink.flush();
    };
}

// Tells the machine what each point shall hold: axis names, "time", "deflection".
void select_scan_data(VerbHost& host, const std::vector<std::string>& names);

// Runs a scan, with the number of points as progress; returns that number.
template <class Scan>
std::size_t run_scan(VerbHost& host, const std::string& name, const HostLoop::MakeCommand& make,
                     const PointSink& sink) {
    std::size_t count = 0;
    host.run({.name = name,
              .class_name = Scan::ClassName(),
              .make = make,
              .take = draining<Scan>({[&](const std::vector<double>& point) {
                                          ++count;
                                          sink.add(point);
                                      },
                                      sink.flush}),
              .progress = [&] { return std::to_string(count) + " points"; }});
    return count;
}

// The present time, as in 2026-01-31T12:34:56Z.
std::string time_text();

// Name, revision and serial number of the machine, for the head of a file.
std::string machine_text(MMachAbstract& machine);

// The probe that is loaded, for the head of a file. Asks the machine if it has probes at all.
std::string probe_text(MMachAbstract& machine);

// Runs what fills the file, then writes its footer: whole, or cut if it throws, which passes through.
void fill_scan_file(ScanWriter& file, const std::function<void()>& fill);

}  // namespace zxhost
