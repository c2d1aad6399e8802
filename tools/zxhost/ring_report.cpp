#include "ring_report.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "number_text.h"

namespace zxhost {
namespace {

Json row(const char* quantity, double measured) { return {{"quantity", quantity}, {"measured", measured}}; }

void compare(Json& row, double known, double limit) {
    row["known"] = known;
    row["difference"] = row["measured"].get<double>() - known;
    row["limit"] = limit;
    row["within"] = std::abs(row["difference"].get<double>()) <= limit;
}

std::string millimetres(double value) { return fixed_text(value, 5) + " mm"; }
std::string micrometres(double value) { return fixed_text(value * 1000.0, 2) + " µm"; }

}  // namespace

Json ring_rows(const RingFit& fit, const std::optional<KnownRing>& known) {
    Json rows{row("centre x", fit.centre.x), row("centre y", fit.centre.y), row("radius", fit.radius),
              row("deviation from round", fit.peak_to_valley), row("rms deviation", fit.rms)};
    if (!known) return rows;
    constexpr double last_digit = 2e-6;  // the machine tells six decimals
    const double noise = std::max(known->noise, last_digit);
    compare(rows[0], known->centre.x, noise);
    compare(rows[1], known->centre.y, noise);
    compare(rows[2], known->radius, noise);
    compare(rows[3], known->peak_to_valley(), 10.0 * noise);
    compare(rows[4], std::hypot(known->rms(), known->noise), noise);
    return rows;
}

bool within_limits(const Json& rows) {
    return std::all_of(rows.begin(), rows.end(), [](const Json& row) { return row.value("within", true); });
}

void write_ring_table(std::ostream& out, const Json& rows) {
    Json shown = rows;
    for (Json& row : shown) {
        if (!row.contains("known")) continue;
        row["difference"] = row["difference"].get<double>() * 1000.0;
        row["limit"] = row["limit"].get<double>() * 1000.0;
    }
    std::vector<Column> columns{{"quantity", "quantity"}, {"measured", "measured [mm]", 6}};
    if (!rows.empty() && rows[0].contains("known"))
        columns.insert(columns.end(), {{"known", "known [mm]", 6},
                                       {"difference", "difference [µm]", 3},
                                       {"limit", "limit [µm]", 3},
                                       {"within", "within"}});
    write_table(out, columns, shown);
}

std::vector<std::pair<std::string, std::string>> ring_numbers(const RingFit& fit, std::size_t points,
                                                              const std::optional<KnownRing>& known) {
    std::vector<std::pair<std::string, std::string>> numbers{
        {"points", std::to_string(points)},
        {"centre x", millimetres(fit.centre.x)},
        {"centre y", millimetres(fit.centre.y)},
        {"radius", millimetres(fit.radius)},
        {"deviation from round", micrometres(fit.peak_to_valley)},
        {"rms deviation", micrometres(fit.rms)}};
    if (!known) return numbers;
    numbers.insert(numbers.end(),
                   {{"known centre x", millimetres(known->centre.x)},
                    {"known centre y", millimetres(known->centre.y)},
                    {"known radius", millimetres(known->radius)},
                    {"known deviation", micrometres(known->peak_to_valley())},
                    {"probing noise (1σ)", micrometres(known->noise)},
                    {"agreement", within_limits(ring_rows(fit, known)) ? "within noise" : "NO"}});
    return numbers;
}

}  // namespace zxhost
