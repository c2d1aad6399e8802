#include "scan_results.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>

#include "exit_status.h"
#include "number_text.h"
#include "output_file.h"
#include "plot.h"
#include "ring_picture.h"
#include "scan_export.h"
#include "scan_points.h"
#include "shapes.h"

namespace zxhost {
namespace {

using Numbers = std::vector<std::pair<std::string, std::string>>;

std::string label(const ScanPoints& scan, std::size_t i) {
    return scan.units[i].empty() ? scan.axes[i] : scan.axes[i] + " [" + scan.units[i] + "]";
}

std::string subtitle(const ScanPoints& scan) {
    return scan.header.machine + " · " + scan.header.time + " · " + scan.header.action +
           (scan.verdict.state == ScanState::Cut ? " · CUT" : "");
}

std::vector<PlanePoint> in_plane(const ScanPoints& scan) {
    std::vector<PlanePoint> points;
    for (const Point<3>& point : scan.points) points.push_back({point[0], point[1]});
    return points;
}

// Deviations are told in micrometres where lengths are in millimetres.
double fine(const ScanPoints& scan) { return scan.units[0] == "mm" ? 1000.0 : 1.0; }
std::string fine_unit(const ScanPoints& scan) { return scan.units[0] == "mm" ? "µm" : scan.units[0]; }

bool is_deviation(const Quantity& quantity) { return quantity.name.find("deviation") != std::string::npos; }

bool is_form(const Quantity& quantity) { return quantity.name.starts_with("deviation from "); }

std::string value_text(const ScanPoints& scan, const Quantity& quantity) {
    if (is_deviation(quantity)) return fixed_text(quantity.value * fine(scan), 3) + " " + fine_unit(scan);
    return fixed_text(quantity.value, quantity.is_length ? 5 : 8) +
           (quantity.is_length ? " " + scan.units[0] : "");
}

Numbers numbers_of(const ScanPoints& scan, const FittedShape& shape) {
    Numbers numbers{{"points", std::to_string(scan.points.size())}};
    for (const Quantity& quantity : shape.quantities)
        numbers.emplace_back(quantity.name, value_text(scan, quantity));
    return numbers;
}

std::string title(const ScanPoints& scan, const FittedShape& shape) {
    const auto form = std::find_if(shape.quantities.begin(), shape.quantities.end(), is_form);
    std::string name(shape.name);
    name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return fmt::format("{}: {:.2f} {} from {}", name, form->value * fine(scan), fine_unit(scan), shape.ideal);
}

void write_picture_file(const std::string& file, const std::function<void(std::ostream&)>& write) {
    std::ofstream out = open_output(file);
    write(out);
    close_output(out, file);
}

void picture_points(const std::string& file, const ScanPoints& scan) {
    Plot plot{label(scan, 1) + " over " + label(scan, 0),
              subtitle(scan),
              label(scan, 0),
              label(scan, 1),
              in_plane(scan),
              scan.units[0] == scan.units[1],
              {}};
    write_picture_file(file, [&](std::ostream& out) { write_plot(out, plot); });
}

// A circle as a ring with its deviation enlarged.
void picture_ring(const std::string& file, const ScanPoints& scan, const FittedShape& shape) {
    RingPicture picture;
    picture.title = title(scan, shape);
    picture.subtitle = subtitle(scan);
    picture.points = in_plane(scan);
    picture.fit = *fit_ring(picture.points);
    picture.axes = {label(scan, 0), label(scan, 1)};
    picture.numbers = numbers_of(scan, shape);
    write_picture_file(file, [&](std::ostream& out) { write_ring_picture(out, picture); });
}

// The deviations of every other shape over the way along the line, or one after the other.
void picture_deviations(const std::string& file, const ScanPoints& scan, const FittedShape& shape) {
    Plot plot{title(scan, shape),
              subtitle(scan),
              shape.along.empty() ? "point" : "along the line [" + scan.units[0] + "]",
              "deviation [" + fine_unit(scan) + "]",
              {},
              false,
              numbers_of(scan, shape)};
    for (std::size_t i = 0; i < shape.deviations.size(); ++i)
        plot.points.push_back({shape.along.empty() ? static_cast<double>(scan.numbers[i]) : shape.along[i],
                               shape.deviations[i] * fine(scan)});
    write_picture_file(file, [&](std::ostream& out) { write_plot(out, plot); });
}

void write_deviations(const std::string& file, const ScanPoints& scan, const FittedShape& shape) {
    write_picture_file(file, [&](std::ostream& out) {
        out << "point,deviation [" << scan.units[0] << "]\n";
        for (std::size_t i = 0; i < shape.deviations.size(); ++i)
            out << fmt::format("{},{}\n", scan.numbers[i], shape.deviations[i]);
    });
}

Json fit_result(const ScanPoints& scan, const FittedShape& shape) {
    Json quantities = Json::array();
    for (const Quantity& quantity : shape.quantities)
        quantities.push_back({{"quantity", quantity.name},
                              {"value", quantity.value},
                              {"unit", quantity.is_length ? scan.units[0] : ""}});
    return {{"shape", shape.name},
            {"axes", scan.axes},
            {"points", scan.points.size()},
            {"left_out", scan.left_out},
            {"quantities", quantities}};
}

Json fit_and_picture(const ScanPoints& scan, const ScanResults& results) {
    const FittedShape shape = fit_shape(results.shape, scan.axes, scan.units, scan.points);
    if (!results.deviations.empty()) write_deviations(results.deviations, scan, shape);
    if (!results.picture.empty() && shape.name == "circle" && scan.units[0] == "mm")
        picture_ring(results.picture, scan, shape);
    else if (!results.picture.empty())
        picture_deviations(results.picture, scan, shape);
    return fit_result(scan, shape);
}

// Goes over the file once for each thing that is asked for.
class ResultMaker {
public:
    ResultMaker(const std::string& file, const ScanResults& results) : m_file(file), m_results(results) {}

    Json make() {
        exported("ply", m_results.ply, export_ply);
        exported("xyz", m_results.xyz, export_xyz);
        if (!m_results.shape.empty())
            fitted();
        else if (!m_results.picture.empty())
            pictured();
        return m_result;
    }

    const ScanVerdict& verdict() const { return m_verdict; }

private:
    std::vector<std::string> axes_or(const std::vector<std::string>& common) const {
        return m_results.axes.empty() ? common : m_results.axes;
    }

    template <class Export>
    void exported(const char* form, const std::string& target, Export write) {
        if (target.empty()) return;
        const ExportResult counts = write(m_file, target, axes_or({"x", "y", "z"}));
        m_verdict = counts.verdict;
        m_result["files"].push_back(
            {{"file", target}, {"form", form}, {"points", counts.points}, {"left_out", counts.left_out}});
    }

    void fitted() {
        const ScanPoints scan = read(axes_or(common_axes(m_results.shape)));
        m_result["fit"] = fit_and_picture(scan, m_results);
        if (!m_results.deviations.empty()) wrote("deviations", m_results.deviations, scan);
        if (!m_results.picture.empty()) wrote("picture", m_results.picture, scan);
    }

    void pictured() {
        const auto axes = axes_or({"x", "y"});
        if (axes.size() != 2)
            throw HostError(ExitStatus::WrongUsage, "a picture takes two axes",
                            "name them, as in --axes x,z");
        const ScanPoints scan = read(axes);
        picture_points(m_results.picture, scan);
        wrote("picture", m_results.picture, scan);
    }

    ScanPoints read(const std::vector<std::string>& axes) {
        if (axes.size() < 2 || axes.size() > 3)
            throw HostError(ExitStatus::WrongUsage, "take two or three axes",
                            "name them, as in --axes x,y,z");
        ScanPoints scan = read_points(m_file, axes);
        m_verdict = scan.verdict;
        return scan;
    }

    void wrote(const char* form, const std::string& file, const ScanPoints& scan) {
        m_result["files"].push_back(
            {{"file", file}, {"form", form}, {"points", scan.points.size()}, {"left_out", scan.left_out}});
    }

    const std::string& m_file;
    const ScanResults& m_results;
    ScanVerdict m_verdict;
    Json m_result{{"files", Json::array()}};
};

Json shown_rows(const Json& fit) {
    Json rows = fit["quantities"];
    for (Json& row : rows) {
        const bool fine =
            row["unit"] == "mm" && row["quantity"].get<std::string>().find("deviation") != std::string::npos;
        if (!fine) continue;
        row["value"] = row["value"].get<double>() * 1000.0;
        row["unit"] = "µm";
    }
    return rows;
}

}  // namespace

void add_export_options(CLI::App& verb, ScanResults& results) {
    verb.add_option("--ply", results.ply, "write the points as a PLY file");
    verb.add_option("--xyz", results.xyz, "write the points as lines of three numbers");
}

void add_picture_options(CLI::App& verb, ScanResults& results) {
    verb.add_option("--picture", results.picture, "draw an SVG picture: of the points, or of the fit");
    verb.add_option("--fit", results.shape, "fit a line, circle, plane or sphere");
    verb.add_option("--deviations", results.deviations, "write the fit's deviations to this CSV file")
        ->needs("--fit");
    add_axes_option(verb, results);
}

void add_axes_option(CLI::App& verb, ScanResults& results) {
    verb.add_option("--axes", results.axes, "columns to take (default: x,y or x,y,z)")->delimiter(',');
}

Json make_results(const std::string& file, const ScanResults& results, std::ostream& err) {
    ResultMaker maker(file, results);
    Json result = maker.make();
    if (maker.verdict().state == ScanState::Cut && !(result["files"].empty() && !result.contains("fit")))
        err << "note: " << printable(verdict_text(file, maker.verdict())) << std::endl;
    return result;
}

void write_results(std::ostream& out, const Json& result) {
    if (!result["files"].empty())
        write_table(out, {{"form", "form"}, {"points", "points"}, {"left_out", "left out"}, {"file", "file"}},
                    result["files"]);
    if (!result.contains("fit")) return;
    const Json& fit = result["fit"];
    out << fmt::format("{}{} through {} points:\n\n", result["files"].empty() ? "" : "\n",
                       fit["shape"].get<std::string>(), fit["points"].get<std::size_t>());
    write_table(out, {{"quantity", "quantity"}, {"value", "value", 6}, {"unit", "unit"}}, shown_rows(fit));
}

}  // namespace zxhost
