// A measured ring beside what is known of it.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "known_ring.h"
#include "ring_fit.h"
#include "table.h"

namespace zxhost {

// A row each for centre, radius and deviations, in mm: what was measured and, if known, the truth, how far
// they differ and how far they may. The fit of many points is far better than one point, so it must lie
// within the noise of a single one; the extremes of many points reach beyond that noise.
Json ring_rows(const RingFit& fit, const std::optional<KnownRing>& known);

// Are all rows within their limits? True if nothing is known.
bool within_limits(const Json& rows);

// The rows as a table, differences and limits in micrometres.
void write_ring_table(std::ostream& out, const Json& rows);

// The same as pairs of name and value, for the picture.
std::vector<std::pair<std::string, std::string>> ring_numbers(const RingFit& fit, std::size_t points,
                                                              const std::optional<KnownRing>& known);

}  // namespace zxhost
