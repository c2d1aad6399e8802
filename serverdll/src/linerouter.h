// Sorts the server's lines: answers to those who wait for them, everything else to the callbacks.
//
// Used by one thread at a time, the one whose turn it is to read. What is for the callbacks is collected and
// queued at once per batch of lines.
#pragma once

#include <atomic>
#include <string>
#include <string_view>
#include <vector>

#include "dispatcher.h"
#include "linesplitter.h"
#include "replystore.h"
#include "requesttable.h"
#include "scantrack.h"
#include "serverline.h"

namespace serverdll {

class LineRouter {
public:
    LineRouter(RequestTable& requests, Dispatcher& dispatcher, ReplyStore& replies)
        : m_requests(requests), m_dispatcher(dispatcher), m_replies(replies) {}

    // Takes all whole lines; gives the cause if the connection can't go on, else an empty text.
    std::string route(wire::LineSplitter& splitter);
    // Tells the callbacks that the connection is gone.
    void lose(const std::vector<long>& cut_scans);

    // Did the last batch hold nothing but answers to those who wait?
    bool only_answers() const noexcept { return m_onlyAnswers; }

    // The request `id`, about to leave, asks for `watch` lines about that many axes, or with none for their
    // end. What was watched before goes on until the server agrees.
    void ask_watch(long id, std::size_t axes) noexcept {
        m_watchAxesAsked.store(axes, std::memory_order_relaxed);
        m_watchAsked.store(id, std::memory_order_release);
    }

private:
    std::string route_batch(wire::LineSplitter& splitter);
    bool route_line(std::string_view line);
    bool route_message(Delivery::Kind kind, long id, std::string_view body);
    void route_watch(long id, std::string_view body);
    void route_ready(long id);
    void agree_watch(bool failed);
    void route_data(long id, std::string_view body);
    bool route_point(long id, std::string_view body);
    void take_points(ScanTrack& track, wire::LineSplitter& splitter);
    void take_point(ScanTrack& track, std::string_view body);
    void forget_track(long id);
    Delivery& open_rows(Delivery::Kind kind, long id);
    void add_row(std::size_t count);
    void fail(long id, std::string_view text);
    void log_unknown(long id, std::string_view line);
    void log_strange(const std::string& text);
    void flush();

    RequestTable& m_requests;
    Dispatcher& m_dispatcher;
    ReplyStore& m_replies;
    std::atomic<long> m_watchAsked = 0;
    std::atomic<std::size_t> m_watchAxesAsked = 0;
    long m_watch = 0;             // the request whose lines are told
    std::size_t m_watchAxes = 0;  // how many values make a record
    std::vector<Delivery> m_batch;
    std::vector<std::vector<double>> m_spares;
    std::vector<ScanTrack> m_tracks;
    std::size_t m_track = 0;  // the one that had the last point
    std::size_t m_strangeLines = 0;
    bool m_onlyAnswers = false;
};

}  // namespace serverdll
