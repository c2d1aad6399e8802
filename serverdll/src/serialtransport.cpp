// A machine server at the other end of a serial line: raw bytes, eight of data, no parity, one stop bit.
//
// A thread of its own serves the line, and lets readers and writers wait with a bound.
#include <algorithm>
#include <array>
#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/serial_port.hpp>
#include <asio/write.hpp>
#include <functional>
#include <thread>

#include "numbers.h"
#include "os/serial.h"
#include "os/waitlock.h"
#include "transport.h"

namespace serverdll {

namespace {

constexpr std::int64_t default_baud = 115200;
constexpr milliseconds farewell_patience{1000};

struct LineAddress {
    std::string device;
    std::int64_t baud = default_baud;
};

// No blank separates the two: a configuration file's value loses its blanks.
LineAddress split_address(const std::string& server) {
    LineAddress address{server};
    const std::size_t comma = server.rfind(',');
    if (comma != std::string::npos &&
        wire::parse_integer(std::string_view(server).substr(comma + 1), 1, 100000000, address.baud)) {
        address.device.resize(comma);
    }
    address.device = os::serial_device(address.device);
    return address;
}

class SerialTransport : public Transport {
public:
    ~SerialTransport() override {
        say_farewell();
        asio::post(m_context, [this] {
            asio::error_code ignored;
            m_port.close(ignored);
        });
        m_work.reset();
        if (m_thread.joinable()) m_thread.join();
    }

    // An empty text is success.
    std::string open(const LineAddress& address) {
        const std::string name = "the serial line \"" + address.device + "\"";
        asio::error_code error;
        m_port.open(address.device, error);
        if (!error && !set_speed(address.baud))
            return name + " has no speed of " + std::to_string(address.baud) + " baud";
        if (!error) set_up(error);
        if (error) return name + " can't be opened: " + error.message();
        m_gone = name + " is gone";
        m_blockPart = static_cast<std::size_t>(std::clamp<std::int64_t>(address.baud / 7, 64, 65536));
        m_thread = std::thread([this] { m_context.run(); });
        return "";
    }

    // One to three seconds, by how much of it must be escaped.
    std::size_t block_part() const override { return m_blockPart; }

    // Ends what the line may have had of an earlier client's request, and asks for the hello.
    std::string_view opening() const override { return "\r\n0000\thello\r\n"; }

    ReadResult read(std::span<char> to, milliseconds at_most) override {
        const Clock::time_point end = Clock::now() + at_most;
        os::WaitLock lock(m_lock);
        while (m_begin == m_end && m_cause == nullptr) {
            if (!m_isReading) {
                m_isReading = true;
                asio::post(m_context, [this] { read_line(); });
            }
            if (!lock.wait_until(m_changed, end) && m_begin == m_end && m_cause == nullptr) return {};
        }
        if (m_begin == m_end || m_isShut) return {ReadStatus::ended, 0, m_cause};
        const std::size_t count = std::min(to.size(), m_end - m_begin);
        std::copy_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_begin), count, to.begin());
        m_begin += count;
        return {ReadStatus::bytes, count, ""};
    }

    const char* write(std::string_view bytes, milliseconds at_most) override {
        {
            const os::LockGuard guard(m_lock);
            if (m_cause != nullptr) return m_cause;
        }
        return send(bytes, at_most);
    }

    void shutdown() noexcept override {
        {
            const os::LockGuard guard(m_lock);
            m_isShut = true;
            if (m_cause == nullptr) m_cause = "the line was given up";
        }
        m_changed.notify_all();
    }

private:
    bool set_speed(std::int64_t baud) {
        asio::error_code error;
        m_port.set_option(asio::serial_port::baud_rate(static_cast<unsigned>(baud)), error);
        return !error;
    }

    void set_up(asio::error_code& error) {
        using asio::serial_port;
        m_port.set_option(serial_port::character_size(8), error);
        if (!error) m_port.set_option(serial_port::parity(serial_port::parity::none), error);
        if (!error) m_port.set_option(serial_port::stop_bits(serial_port::stop_bits::one), error);
        if (!error) m_port.set_option(serial_port::flow_control(serial_port::flow_control::none), error);
        if (!error) os::serial_discard(os::SerialHandle(m_port.native_handle()));
    }

    // On the line's thread.
    void read_line() {
        m_port.async_read_some(asio::buffer(m_bytes), [this](asio::error_code error, std::size_t count) {
            {
                const os::LockGuard guard(m_lock);
                m_isReading = false;
                m_begin = 0;
                m_end = error ? 0 : count;
                if (error) fail();
            }
            m_changed.notify_all();
        });
    }

    // What is sent stays here until it has left, even if nobody waits for that any more.
    const char* send(std::string_view bytes, milliseconds at_most) {
        const Clock::time_point end = Clock::now() + at_most;
        os::WaitLock lock(m_lock);
        if (const char* cause = wait_for_writing(lock, end)) return cause;  // of bytes that were given up
        m_isWriting = true;
        m_outgoing = bytes;
        asio::post(m_context, [this] { write_line(); });
        if (const char* cause = wait_for_writing(lock, end)) return cause;
        return m_hasFailed ? m_gone.c_str() : nullptr;
    }

    const char* wait_for_writing(os::WaitLock& lock, Clock::time_point end) OS_REQUIRES(m_lock) {
        while (m_isWriting) {
            if (m_isShut && !m_isLeaving) return m_cause;
            if (!lock.wait_until(m_changed, end) && m_isWriting) return takes_nothing;
        }
        return nullptr;
    }

    void write_line() {
        asio::async_write(m_port, asio::buffer(m_outgoing), [this](asio::error_code error, std::size_t) {
            {
                const os::LockGuard guard(m_lock);
                m_isWriting = false;
                if (error) fail();
            }
            m_changed.notify_all();
        });
    }

    void fail() OS_REQUIRES(m_lock) {
        m_hasFailed = true;
        if (m_cause == nullptr) m_cause = m_gone.c_str();
    }

    // The server can't see that a client has gone. Nobody reads or writes any more.
    void say_farewell() {
        if (!m_thread.joinable()) return;
        {
            const os::LockGuard guard(m_lock);
            if (m_hasFailed) return;
            m_isLeaving = true;
        }
        if (send("\r\n0000\tbye\r\n", farewell_patience) != nullptr)
            os::serial_discard(os::SerialHandle(m_port.native_handle()));
    }

    static constexpr const char* takes_nothing = "the server takes no requests";

    asio::io_context m_context{1};
    asio::executor_work_guard<asio::io_context::executor_type> m_work = asio::make_work_guard(m_context);
    asio::serial_port m_port{m_context};
    std::thread m_thread;
    std::string m_gone;
    std::size_t m_blockPart = 0;

    // Of the operations under way, hence of the line's thread until they are done.
    std::array<char, 4096> m_bytes{};
    std::string m_outgoing;

    os::Mutex m_lock;
    std::condition_variable m_changed;
    std::size_t m_begin OS_GUARDED_BY(m_lock) = 0;
    std::size_t m_end OS_GUARDED_BY(m_lock) = 0;
    const char* m_cause OS_GUARDED_BY(m_lock) = nullptr;  // why nothing goes any more
    bool m_isReading OS_GUARDED_BY(m_lock) = false;
    bool m_isWriting OS_GUARDED_BY(m_lock) = false;
    bool m_isShut OS_GUARDED_BY(m_lock) = false;
    bool m_hasFailed OS_GUARDED_BY(m_lock) = false;
    bool m_isLeaving OS_GUARDED_BY(m_lock) = false;
};

}  // namespace

std::unique_ptr<Transport> connect_serial(const std::string& server) {
    auto transport = std::make_unique<SerialTransport>();
    const std::string cause = transport->open(split_address(server));
    if (!cause.empty()) refuse_connection(server, cause);
    return transport;
}

}  // namespace serverdll
