// The way of a scan point from the client's callback to GetNextScanPoint, against a mutex and a
// deque<vector<double>> and nothing else, and the memory that a queued point takes.
#include <cstdlib>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <thread>
#include <utility>
#include <vector>

#include "comparison.h"
#include "m2zendrixmachabstract.h"
#include "mmachnotifier.h"
#include "moutputchannel.h"
#include "scripted_czendrixcom.h"

namespace {

// What an allocator keeps beside a block, at least.
constexpr std::size_t block_overhead = 16;
bool counting = false;  // else the counters would cost the comparisons time
std::size_t held_bytes = 0;

// Ours also decides when to wake the host. What counts in the end is the whole way of a point, scan_bench.
constexpr double limit = 2.0;
constexpr double aim = 1.0;

constexpr unsigned point_values = 4;
using Point = std::vector<double>;

class IdleNotifier : public MMachNotifier {
public:
    int HasNotification() override { return 0; }
    bool Notify() override { return true; }
};

class ConnectedDriver : public M2ZendrixMachAbstract {
public:
    ConnectedDriver(MOutputChannel* output, MMachNotifier* notifier)
        : M2ZendrixMachAbstract(output, notifier, "bench", ".") {
        m_pZendrixCom = new CZendrixCOM(nullptr, nullptr, "scripted", nullptr);
    }
};

// The queue of a scan command, driven as the client drives it.
class ScanQueue {
public:
    ScanQueue() : m_scan(m_driver.NewMMachScanCommand(&m_channel, {})) {
        m_slot = scripted::script().slots().scan;
    }

    void put(double* values) { m_slot.first(m_slot.second, point_values, values); }
    bool take(Point& point) { return m_scan->GetNextScanPoint(point); }

private:
    IdleNotifier m_notifier;
    MOutputChannel m_channel{1};
    ConnectedDriver m_driver{&m_channel, &m_notifier};
    std::unique_ptr<MMachScanCommand> m_scan;
    std::pair<ZXDataCallback, void*> m_slot;
};

class PlainQueue {
public:
    void put(const double* values) {
        std::lock_guard guard(m_mutex);
        m_points.emplace_back(values, values + point_values);
    }
    bool take(Point& point) {
        std::lock_guard guard(m_mutex);
        if (m_points.empty()) return false;
        point = std::move(m_points.front());
        m_points.pop_front();
        return true;
    }

private:
    std::mutex m_mutex;
    std::deque<Point> m_points;
};

template <class Queue>
void put_points(Queue& queue, std::size_t count) {
    double values[point_values] = {1.5, 2.5, 3.5, 0.0};
    for (std::size_t i = 0; i < count; ++i) {
        values[3] = static_cast<double>(i);
        queue.put(values);
    }
}

template <class Queue>
std::size_t take_points(Queue& queue) {
    std::size_t taken = 0;
    for (Point point; queue.take(point);) taken += point.size() / point_values;
    return taken;
}

// `burst` points in, then all of them out, on one thread.
template <class Queue>
bench::Measure in_bursts(Queue& queue, std::size_t burst) {
    constexpr std::size_t count = 200'000;
    return bench::processor_time(
        [&queue, burst] {
            for (std::size_t done = 0; done < count; done += burst) {
                put_points(queue, burst);
                bench::keep(take_points(queue));
            }
        },
        count);
}

// One thread puts while another takes.
template <class Queue>
bench::Measure on_two_threads(Queue& queue) {
    constexpr std::size_t count = 200'000;
    return bench::processor_time(
        [&queue] {
            std::thread client([&queue] { put_points(queue, count); });
            std::size_t taken = 0;
            while (taken < count) {
                taken += take_points(queue);
                std::this_thread::yield();
            }
            client.join();
        },
        count);
}

double bytes_beyond_payload() {
    constexpr std::size_t count = 100'000;
    ScanQueue queue;
    counting = true;
    put_points(queue, count);
    counting = false;
    const auto held = static_cast<double>(std::exchange(held_bytes, 0));
    return held / static_cast<double>(count) - point_values * sizeof(double);
}

}  // namespace

// Counts what is held, each block with what the allocator keeps beside it.
void* operator new(std::size_t size) {
    auto* block = static_cast<std::size_t*>(std::malloc(size + block_overhead));
    if (!block) throw std::bad_alloc();
    *block = size + block_overhead;
    if (counting) held_bytes += *block;
    return reinterpret_cast<char*>(block) + block_overhead;
}
void operator delete(void* memory) noexcept {
    if (!memory) return;
    auto* block = reinterpret_cast<std::size_t*>(static_cast<char*>(memory) - block_overhead);
    if (counting) held_bytes -= *block;
    std::free(block);
}
void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

int main() {
    ScanQueue ours;
    PlainQueue plain;
    bench::print_head("a mutex and a deque<vector<double>>, nothing else");
    for (const std::size_t burst : {1u, 100u, 10'000u}) {
        bench::compare({.name = "scan point, bursts of " + std::to_string(burst),
                        .ours = in_bursts(ours, burst),
                        .reference = in_bursts(plain, burst),
                        .limit = limit,
                        .aim = aim});
    }
    bench::compare({.name = "scan point, two threads",
                    .ours = on_two_threads(ours),
                    .reference = on_two_threads(plain),
                    .limit = limit,
                    .aim = aim});
    bench::print_figure("bytes per queued point beyond its payload (at most 64)", bytes_beyond_payload(),
                        "bytes");
}
