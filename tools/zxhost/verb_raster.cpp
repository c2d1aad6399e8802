// zxhost raster: which axes take which role for a request.
#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "list_verb.h"
#include "raster_roles.h"
#include "targets.h"
#include "verb_host.h"

namespace zxhost {
namespace {

struct RasterOptions {
    std::vector<std::string> words;
    bool polygon = false;
    bool circle = false;
    bool scanbase = false;
};

std::vector<std::string> split(const std::string& text) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t comma = 0; comma != std::string::npos; begin = comma + 1) {
        comma = text.find(',', begin);
        parts.push_back(text.substr(begin, comma == std::string::npos ? comma : comma - begin));
    }
    return parts;
}

RasterRequest request_of(const RasterOptions& options) {
    if (options.polygon) {
        RasterRequest request{RasterForm::Polygon, {}};
        for (const std::string& word : options.words) request.groups.push_back(parse_axis_set(split(word)));
        return request;
    }
    const RasterForm form = options.circle     ? RasterForm::Circle
                            : options.scanbase ? RasterForm::Scanbase
                                               : RasterForm::Axes;
    return {form, {parse_axis_set(options.words)}};
}

void raster(const Program& program, const Streams& streams, const RasterOptions& options) {
    const RasterRequest request = request_of(options);
    VerbHost host(program.settings, streams);
    Json rows = Json::array();
    for (const RasterRole& role : raster_roles(host.machine(), request))
        rows.push_back({{"role", role.role.empty() ? Json() : Json(role.role)},
                        {"axis", role.axis.empty() ? Json() : Json(role.axis)},
                        {"reason", role.reason}});
    host.poll();
    host.show({{"role", "role"}, {"axis", "axis"}, {"reason", "reason"}}, rows);
}

}  // namespace

void add_raster(CLI::App& app, Program& program) {
    const auto options = std::make_shared<RasterOptions>();
    CLI::App* const verb = app.add_subcommand(
        "raster", "Show which axes take which role of a raster or scan base, and why; nothing moves");
    verb->add_option("AXIS", options->words, "names; with --polygon a point each, as in: x,y z,c");
    CLI::Option* const polygon = verb->add_flag("--polygon", options->polygon, "each word is a point");
    CLI::Option* const circle =
        verb->add_flag("--circle", options->circle, "of a circle, with AXIS as its further axes");
    CLI::Option* const scanbase = verb->add_flag("--scanbase", options->scanbase, "of a scan base");
    polygon->excludes(circle)->excludes(scanbase);
    circle->excludes(scanbase);
    verb->footer("example: zxhost raster x c\n         zxhost raster --circle c");
    verb->callback([&program, options] {
        program.verb = [&program, options](const Streams& streams) { raster(program, streams, *options); };
    });
}

}  // namespace zxhost
