#include "machine/descriptionreader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string_view>

#include "fileops.h"
#include "machine/blockstore.h"
#include "machine/error.h"
#include "machine/probesreader.h"
#include "messagecatalogue.h"
#include "numbers.h"
#include "stl_utilities.h"

namespace zendrix::sim {

namespace {

constexpr double any = 1e9;  // beyond every length, angle and speed of a machine
constexpr double positive = 1e-6;
constexpr double hour = 3600.0;

// The kinds by name.
struct KindName {
    std::string_view name;
    AxisKind kind;
};
constexpr std::array kinds{KindName{"spindle", AxisKind::spindle}, KindName{"linear", AxisKind::linear},
                           KindName{"rotary", AxisKind::rotary}, KindName{"value", AxisKind::value},
                           KindName{"inactive", AxisKind::inactive}};

struct ShapeName {
    std::string_view name;
    WorkpieceDescription::Kind kind;
};
using Shape = WorkpieceDescription::Kind;
constexpr std::array shapes{ShapeName{"ring", Shape::ring}, ShapeName{"cylinder", Shape::cylinder},
                            ShapeName{"cone", Shape::cone}, ShapeName{"sphere", Shape::sphere},
                            ShapeName{"plane", Shape::plane}};

template <class Table, class Kind>
void read_kind(IniSection& section, const Table& table, Kind& kind) {
    std::string name;
    section.text("kind", name);
    std::string list;
    for (const auto& entry : table) {
        if (entry.name == name) {
            kind = entry.kind;
            return;
        }
        list.append(" ").append(entry.name);
    }
    section.complain("kind", "\"" + name + "\" is none of" + list);
}

void read_pairs(IniSection& section, std::map<std::string, std::string>& pairs) {
    for (const std::string& key : section.keys()) section.text(key.c_str(), pairs[key]);
}

void read_machine_section(IniSection& section, MachineDescription& machine) {
    section.text("name", machine.name);
    section.text("revision", machine.revision);
    section.text("serial", machine.serial);
    section.flag("initialized", machine.starts_initialized);
}

void read_motion(IniSection& section, MachineDescription& machine) {
    section.number("speed", machine.speed, positive, 100000.0);
    section.number("scanspeed", machine.scan_speed, positive, 100000.0);
    section.number("scanstep", machine.scan_step, positive, 1000.0);
}

void read_probe(IniSection& section, MachineDescription& machine) {
    machine.has_probe = section.exists();
    section.number("range", machine.probing_range, positive, any);
    std::int64_t points = static_cast<std::int64_t>(machine.max_points);
    section.integer("max_points", points, 1, 1000000000);
    machine.max_points = static_cast<std::size_t>(points);
    read_probes(section, machine);
}

void read_probesystems(IniSection& section, MachineDescription& machine) {
    section.number("seconds", machine.probesystems.seconds, 0.0, hour);
}

void read_wobble(IniSection& section, MachineDescription& machine) {
    if (!section.exists()) return;
    std::vector<double> numbers;
    section.numbers("numbers", numbers);
    std::array<double, 6> wobble{};
    const bool is_finite = std::all_of(numbers.begin(), numbers.end(),
                                       [](double number) { return number >= -any && number <= any; });
    if (numbers.size() != wobble.size() || !is_finite) section.complain("numbers", "there are six numbers");
    std::copy(numbers.begin(), numbers.end(), wobble.begin());
    machine.wobble = wobble;
}

bool is_reserved(const std::string& name) {
    constexpr std::array reserved{"init",      "probe",    "tip",  "speed",
                                  "scanspeed", "scanstep", "time", "deflection"};
    return std::find(reserved.begin(), reserved.end(), name) != reserved.end();
}

void check_axis_name(const IniSection& section, const std::string& name) {
    if (name.empty() || name.find_first_of(" \t\"=;+-") != std::string::npos) {
        section.complain("", "an axis name has no blanks, quotes or any of = ; + -");
    }
    if (is_reserved(name)) section.complain("", "\"" + name + "\" is a name that the machine itself uses");
}

void check_place(const IniSection& section, const AxisDescription& axis, const char* key, double place) {
    if (!axis.has_limits || (place >= axis.lower && place <= axis.upper)) return;
    section.complain(key, "lies outside the limits of travel");
}

void check_axis(const IniSection& section, const AxisDescription& axis) {
    if ((axis.speed > 0.0) != (axis.acceleration > 0.0)) {
        section.complain("speed", "a drive has both, speed and acceleration");
    }
    if (axis.has_limits && axis.lower >= axis.upper) section.complain("upper", "must be above lower");
    if (axis.kind == AxisKind::spindle && axis.has_limits)
        section.complain("lower", "a spindle has no limits");
    if ((axis.step == 0.0) == axis.values.empty()) {
        section.complain("values", "goes with step=0, and only with that");
    }
    if (axis.spinning != 0.0 && !axis.can_spin) section.complain("spinning", "needs spin=1");
    if (axis.can_spin && axis.kind != AxisKind::spindle) section.complain("spin", "only a spindle spins");
    if (axis.can_spin && axis.spin_speed == 0.0) section.complain("spin_speed", "must be above 0");
    check_place(section, axis, "start", axis.start);
    check_place(section, axis, "home", axis.home);
    check_place(section, axis, "reference", axis.reference);
}

AxisDescription read_axis(IniSection& section, const std::string& name) {
    AxisDescription axis;
    axis.name = name;
    check_axis_name(section, name);
    read_kind(section, kinds, axis.kind);
    axis.has_limits = section.has("lower") || section.has("upper");
    section.number("lower", axis.lower, -any, any);
    section.number("upper", axis.upper, -any, any);
    section.number("resolution", axis.resolution, 0.0, any);
    axis.step = axis.resolution > 0.0 ? axis.resolution : positive;
    section.number("step", axis.step, 0.0, any);
    section.numbers("values", axis.values);
    section.number("speed", axis.speed, 0.0, any);
    section.number("acceleration", axis.acceleration, 0.0, any);
    if (!axis.values.empty()) axis.start = axis.home = axis.values.front();
    section.number("home", axis.home, -any, any);
    section.number("reference", axis.reference, -any, any);
    section.number("start", axis.start, -any, any);
    section.flag("init", axis.needs_init);
    section.flag("keypad", axis.on_keypad);
    section.flag("scan", axis.can_scan);
    section.flag("spin", axis.can_spin);
    section.number("spinning", axis.spinning, -any, any);
    axis.spin_speed = axis.spinning != 0.0 ? std::abs(axis.spinning) : axis.speed;
    section.number("spin_speed", axis.spin_speed, 0.0, any);
    check_axis(section, axis);
    return axis;
}

void read_harmonics(IniSection& section, std::vector<Harmonic>& harmonics) {
    std::string text;
    section.text("harmonics", text);
    std::vector<std::string> waves;
    stl_string_tokenize(text, " \t", waves);
    for (const std::string& wave : waves) {
        std::vector<std::string> parts;
        stl_string_tokenize(wave, ":", parts);
        Harmonic harmonic;
        std::int64_t count = 0;
        const bool is_good = parts.size() == 3 && wire::parse_integer(parts[0], 1, 100000, count) &&
                             wire::parse_number(parts[1], harmonic.amplitude) &&
                             wire::parse_number(parts[2], harmonic.phase);
        if (!is_good) section.complain("harmonics", "\"" + wave + "\" is not WAVES:AMPLITUDE:PHASE");
        harmonic.waves = static_cast<int>(count);
        harmonics.push_back(harmonic);
    }
}

void read_workpiece(IniSection& section, MachineDescription& machine) {
    if (!section.exists()) return;
    WorkpieceDescription& piece = machine.workpiece;
    read_kind(section, shapes, piece.kind);
    section.number("center_x", piece.center.x, -any, any);
    section.number("center_y", piece.center.y, -any, any);
    section.number("center_z", piece.center.z, -any, any);
    if (piece.kind != Shape::plane) {
        piece.radius = 10.0;
        section.number("radius", piece.radius, positive, any);
    }
    if (piece.kind == Shape::cone) section.number("taper", piece.taper, -89.0, 89.0);
    if (piece.kind == Shape::cone || piece.kind == Shape::cylinder) {
        section.number("height", piece.height, positive, any);
    }
    if (piece.kind == Shape::plane) {
        section.number("normal_x", piece.normal.x, -1.0, 1.0);
        section.number("normal_y", piece.normal.y, -1.0, 1.0);
        section.number("normal_z", piece.normal.z, -1.0, 1.0);
        section.number("wavelength", piece.wavelength, positive, any);
        if (length(piece.normal) < positive) section.complain("normal_z", "the normal has no direction");
    }
    read_harmonics(section, piece.harmonics);
    section.number("noise", piece.noise, 0.0, any);
    std::int64_t seed = static_cast<std::int64_t>(machine.seed);
    section.integer("seed", seed, 0, std::numeric_limits<std::int64_t>::max());
    machine.seed = static_cast<std::uint64_t>(seed);
    section.text("spindle", piece.spindle);
}

void read_size(IniSection& section, const char* key, std::size_t& size) {
    std::int64_t read = static_cast<std::int64_t>(size);
    section.integer(key, read, 0, std::int64_t{1} << 40);
    size = static_cast<std::size_t>(read);
}

void read_blocks(IniSection& section, MachineDescription& machine) {
    BlocksDescription& blocks = machine.blocks;
    read_size(section, "most", blocks.most);
    read_size(section, "longest", blocks.longest);
    read_size(section, "total", blocks.total);
    section.number("restart", blocks.restart, 0.0, hour);
}

void read_block(IniSection& section, const std::string& name, MachineDescription& machine) {
    section.text("text", machine.blocks.blocks[name]);
}

void check_blocks(const IniSection& section, const MachineDescription& machine) {
    try {
        BlockStore store(machine.blocks);
    } catch (const Refused& refused) {
        section.complain("", "the blocks of this file don't fit: " +
                                 std::string(error_text(static_cast<int>(refused.error))));
    }
}

void check_spindle(const IniSection& section, const MachineDescription& machine) {
    const std::string& spindle = machine.workpiece.spindle;
    const bool is_there =
        std::any_of(machine.axes.begin(), machine.axes.end(), [&](const AxisDescription& axis) {
            return axis.name == spindle && (axis.kind == AxisKind::spindle || axis.kind == AxisKind::rotary);
        });
    if (!spindle.empty() && !is_there) section.complain("spindle", "\"" + spindle + "\" is no turning axis");
}

using Reader = void (*)(IniSection& section, MachineDescription& machine);
struct SectionReader {
    const char* name;
    Reader read;
};
constexpr std::array section_readers{
    SectionReader{"machine", read_machine_section},
    SectionReader{"components",
                  [](IniSection& section, MachineDescription& m) { read_pairs(section, m.components); }},
    SectionReader{"options",
                  [](IniSection& section, MachineDescription& m) { read_pairs(section, m.options); }},
    SectionReader{"motion", read_motion},
    SectionReader{"probe", read_probe},
    SectionReader{"probesystems", read_probesystems},
    SectionReader{"wobble", read_wobble},
    SectionReader{"blocks", read_blocks},
    SectionReader{"workpiece", read_workpiece}};

// Sections that there may be many of, told by the begin of their names.
struct ManyReader {
    std::string_view prefix;
    void (*read)(IniSection& section, const std::string& rest, MachineDescription& machine);
};
constexpr std::array many_readers{
    ManyReader{"axis ", [](IniSection& section, const std::string& name,
                           MachineDescription& m) { m.axes.push_back(read_axis(section, name)); }},
    ManyReader{"tip ", read_tip}, ManyReader{"block ", read_block},
    ManyReader{"probesystem ", read_probesystem}};

void read_one_of_many(IniSection& section, const std::string& name, MachineDescription& machine) {
    for (const ManyReader& reader : many_readers) {
        if (!name.starts_with(reader.prefix)) continue;
        reader.read(section, name.substr(reader.prefix.size()), machine);
        return section.no_more_keys();
    }
    section.complain("", "no such section");
}

MachineDescription read_model(const MIniData& ini, const std::string& file) {
    MachineDescription machine;
    for (const SectionReader& reader : section_readers) {
        IniSection section(ini, file, reader.name);
        reader.read(section, machine);
        section.no_more_keys();
    }
    std::vector<std::string> names;
    ini.GetSectionNames(names);
    for (const std::string& name : names) {
        const bool is_read = std::any_of(section_readers.begin(), section_readers.end(),
                                         [&](const SectionReader& reader) { return name == reader.name; });
        IniSection section(ini, file, name);
        if (!is_read) read_one_of_many(section, name, machine);
    }
    check_spindle(IniSection(ini, file, "workpiece"), machine);
    check_probes(IniSection(ini, file, "probe"), machine);
    check_blocks(IniSection(ini, file, "blocks"), machine);
    if (machine.axes.empty()) throw DescriptionError(file + ": there is no [axis NAME] section");
    return machine;
}

}  // namespace

MachineDescription read_machine(const std::string& filename) {
    if (!file_exists(filename.c_str())) throw DescriptionError(filename + ": there is no such file");
    MIniData ini(0u);
    if (!ini.Open(filename)) {
        const std::string reason = ini.GetLastError();
        throw DescriptionError(filename + ": " + (reason.empty() ? "cannot be read" : reason));
    }
    return read_model(ini, filename);
}

MachineDescription parse_machine(const std::string& content, const std::string& name_for_messages) {
    MIniData ini(0u);
    if (!ini.SetContentString(content)) throw DescriptionError(name_for_messages + ": " + ini.GetLastError());
    return read_model(ini, name_for_messages);
}

}  // namespace zendrix::sim
