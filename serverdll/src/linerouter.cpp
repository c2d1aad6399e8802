#include "linerouter.h"

#include <algorithm>

#include "clientlog.h"
#include "handshake.h"
#include "numbers.h"

namespace serverdll {

namespace {

// A server that talks nonsense all day fills no disk.
constexpr std::size_t most_strange_lines = 20;

}  // namespace

std::string LineRouter::route(wire::LineSplitter& splitter) {
    m_onlyAnswers = true;
    std::string cause = route_batch(splitter);
    flush();
    return cause;
}

std::string LineRouter::route_batch(wire::LineSplitter& splitter) {
    std::string_view line;
    for (;;) {
        if (m_track < m_tracks.size()) take_points(m_tracks[m_track], splitter);
        const wire::Framing framing = splitter.next(line);
        if (framing == wire::Framing::none) return "";
        if (framing == wire::Framing::too_long) {
            return "the server sent an over-long line: \"" + first_bytes(line) + "...\"";
        }
        std::string_view body;
        if (m_track < m_tracks.size() && m_tracks[m_track].is_mine(line, body)) {
            take_point(m_tracks[m_track], body);
        } else if (!route_line(line)) {
            return "the server sent something that is no line of the protocol: \"" + first_bytes(line) + "\"";
        }
    }
}

bool LineRouter::route_line(std::string_view line) {
    wire::ServerLine parsed;
    if (!wire::parse_server_line(line, parsed)) return false;
    const long id = static_cast<long>(parsed.id);
    switch (parsed.keyword) {
        case wire::Keyword::accepted:
            m_requests.accepted(id);
            return true;
        case wire::Keyword::data:
            route_data(id, parsed.body);
            return true;
        case wire::Keyword::ready:
            route_ready(id);
            return true;
        case wire::Keyword::point:
            return route_point(id, parsed.body);
        case wire::Keyword::watch:
            route_watch(id, parsed.body);
            return true;
        case wire::Keyword::error:
            return route_message(Delivery::Kind::error, id, parsed.body);
        case wire::Keyword::warning:
            return route_message(Delivery::Kind::warning, id, parsed.body);
        case wire::Keyword::event:
            return route_message(Delivery::Kind::event, id, parsed.body);
        case wire::Keyword::hello:
        case wire::Keyword::unknown:
            log_unknown(id, line);
            return true;
    }
    return false;
}

bool LineRouter::route_message(Delivery::Kind kind, long id, std::string_view body) {
    std::string_view text;
    if (!wire::message_text(body, text)) return false;
    if (kind == Delivery::Kind::event) {
        m_batch.push_back({kind, 0, 0, 0, std::string(text), {}});
    } else if (std::optional<Delivery> told = m_requests.message(kind, id, text)) {
        m_batch.push_back(std::move(*told));
    }
    return true;
}

void LineRouter::route_data(long id, std::string_view body) {
    if (!m_requests.data(id, body)) return;
    m_onlyAnswers = false;  // nobody waits for these, but many come
    if (!m_replies.add(id, body)) fail(id, "receive: the block is too long");
}

void LineRouter::route_ready(long id) {
    // Whoever is told of a failure must find its error callback queued already.
    flush();
    forget_track(id);
    const RequestTable::Ended ended = m_requests.ready(id);
    if (ended.completes) {
        m_batch.push_back({Delivery::Kind::complete, id, 0, 0, {}, {}});
        m_onlyAnswers = false;
    } else if (ended.kind == RequestKind::receive) {
        m_replies.drop(id);
    }
    if (id == m_watchAsked.load(std::memory_order_acquire)) agree_watch(ended.failed);
    if (!ended.known) log_unknown(id, "ready");
}

void LineRouter::agree_watch(bool failed) {
    const long asked = m_watchAsked.exchange(0, std::memory_order_acquire);
    if (failed) return;
    m_watchAxes = m_watchAxesAsked.load(std::memory_order_relaxed);
    m_watch = m_watchAxes > 0 ? asked : 0;
}

bool LineRouter::route_point(long id, std::string_view body) {
    const auto known =
        std::find_if(m_tracks.begin(), m_tracks.end(), [id](const ScanTrack& t) { return t.id() == id; });
    if (known == m_tracks.end() && !m_requests.takes_points(id)) {
        log_unknown(id, "point");
        return true;
    }
    m_track = static_cast<std::size_t>(known - m_tracks.begin());
    if (known == m_tracks.end()) m_tracks.emplace_back(id);
    take_point(m_tracks[m_track], body);
    return true;
}

// All points of the scan that stand one after the other: nearly all lines that a client ever reads.
void LineRouter::take_points(ScanTrack& track, wire::LineSplitter& splitter) {
    const std::string_view bytes = splitter.rest();
    std::size_t taken = 0;
    std::size_t length = 0;
    do {
        std::size_t count = 0;
        length =
            track.take_line(bytes.substr(taken), open_rows(Delivery::Kind::points, track.id()).values, count);
        add_row(count);
        taken += length;
    } while (length > 0);
    splitter.skip(taken);
    if (taken > 0) m_onlyAnswers = false;
}

void LineRouter::take_point(ScanTrack& track, std::string_view body) {
    std::string_view error;
    m_onlyAnswers = false;
    const std::size_t count = track.take(body, open_rows(Delivery::Kind::points, track.id()).values, error);
    add_row(count);
    if (!error.empty()) fail(track.id(), error);
}

void LineRouter::route_watch(long id, std::string_view body) {
    if (id != m_watch) return;
    std::vector<double>& values = open_rows(Delivery::Kind::watch, id).values;
    const std::size_t before = values.size();
    if (!wire::scan_numbers(body, values)) {
        values.resize(before);
        log_unknown(id, body);
    }
    // Whole records only: nobody could tell whose values the rest are.
    const std::size_t rest = (values.size() - before) % m_watchAxes;
    if (rest > 0) {
        log_strange("the server's watch line holds " + std::to_string(values.size() - before) +
                    " values for " + std::to_string(m_watchAxes) + " axes; the last " + std::to_string(rest) +
                    " are left out");
        values.resize(values.size() - rest);
    }
    add_row(values.size() - before);
    m_onlyAnswers = false;
}

// The delivery at the end of the batch that collects rows of this kind.
Delivery& LineRouter::open_rows(Delivery::Kind kind, long id) {
    if (!m_batch.empty() && m_batch.back().kind == kind && m_batch.back().id == id) return m_batch.back();
    Delivery& fresh = m_batch.emplace_back();
    fresh.kind = kind;
    fresh.id = id;
    if (!m_spares.empty()) {
        fresh.values = std::move(m_spares.back());
        m_spares.pop_back();
    }
    return fresh;
}

// `count` values were appended to the last delivery; rows of another width begin a delivery of their own.
void LineRouter::add_row(std::size_t count) {
    Delivery& last = m_batch.back();
    if (count == 0) {
        if (last.rows == 0) m_batch.pop_back();
        return;
    }
    if (last.rows == 0) last.width = count;
    if (count == last.width) {
        ++last.rows;
        return;
    }
    const auto row = last.values.end() - static_cast<std::ptrdiff_t>(count);
    Delivery next{last.kind, last.id, count, 1, {}, std::vector<double>(row, last.values.end())};
    last.values.erase(row, last.values.end());
    m_batch.push_back(std::move(next));
}

void LineRouter::fail(long id, std::string_view text) {
    if (std::optional<Delivery> told = m_requests.message(Delivery::Kind::error, id, text)) {
        m_batch.push_back(std::move(*told));
    }
}

void LineRouter::forget_track(long id) {
    std::erase_if(m_tracks, [id](const ScanTrack& track) { return track.id() == id; });
    m_track = 0;
}

void LineRouter::lose(const std::vector<long>& cut_scans) {
    for (const long id : cut_scans)
        m_batch.push_back({Delivery::Kind::error, id, 0, 0, std::string(points_lost), {}});
    m_batch.push_back({Delivery::Kind::complete, 0, 0, 0, {}, {}});
    m_batch.push_back({Delivery::Kind::silence, 0, 0, 0, {}, {}});
    flush();
}

void LineRouter::log_unknown(long id, std::string_view line) {
    log_strange("the server's line for id " + std::to_string(id) + " fits no request: \"" +
                first_bytes(line) + "\"");
}

void LineRouter::log_strange(const std::string& text) {
    if (m_strangeLines++ < most_strange_lines) log_error("linerouter.cpp", __LINE__, text);
}

void LineRouter::flush() {
    if (!m_batch.empty()) m_dispatcher.push(m_batch, m_spares);
}

}  // namespace serverdll
