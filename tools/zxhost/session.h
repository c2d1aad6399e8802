// A whole measuring session: from the machine's own words to the measured ring.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "circle_options.h"
#include "known_ring.h"
#include "ring_fit.h"
#include "verb_host.h"

namespace zxhost {

struct SessionOptions {
    CircleOptions nominal;    // the ring as the drawing has it
    std::string truth;        // description file of the simulated machine; empty: nothing is known
    std::string out = "out";  // directory for the files
    double clearance = 10.0;  // from the ring to the start of the approach, mm
};

class Session {
public:
    // Throws HostError (wrong usage) before the machine is asked anything.
    Session(const Settings& settings, const Streams& streams, SessionOptions options);

    // Runs it all, leaving ring.csv and ring.svg. Throws HostError; also if the ring that was measured is
    // not the one that is known.
    void run();

private:
    void introduce();
    void go_to_start();
    void measure();
    void leave();
    void report();

    void heading(const std::string& text);
    void command(const std::string& line, const Action& action);
    void move(const std::vector<std::string>& targets);
    std::vector<std::string> aside() const;
    void write_picture(const RingFit& fit);
    void write_report(const RingFit& fit);
    std::string file(const std::string& name) const { return m_options.out + "/" + name; }

    SessionOptions m_options;
    std::optional<KnownRing> m_known;
    MMachCircle m_circle;
    std::ostream& m_result;  // where a report for programs goes
    VerbHost m_host;
    std::ostream& m_prose;
    std::string m_machine;
    std::string m_time;
    std::vector<PlanePoint> m_points;
};

}  // namespace zxhost
