// The entries of a zip archive, read with nothing of the code that writes them. What isn't a whole archive
// fails the test.
#pragma once

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdint>
#include <string>
#include <vector>

struct ArchiveEntry {
    std::string name;
    unsigned flags = 0;
    unsigned method = 0;
    std::uint32_t time = 0;  // as MS-DOS has it, the date in the upper half
    std::uint32_t external_attributes = 0;
    unsigned extra_size = 0;
    unsigned comment_size = 0;
    std::string data;
};

class ArchiveReader {
public:
    explicit ArchiveReader(const std::string& bytes) : m_bytes(bytes) {}

    std::vector<ArchiveEntry> entries() {
        constexpr std::size_t end_size = 22;
        if (m_bytes.size() < end_size) return fail("no archive");
        const std::size_t end = m_bytes.size() - end_size;
        if (number(end, 4) != 0x06054b50) return fail("no end of the directory");
        std::vector<ArchiveEntry> found(number(end + 10, 2));
        std::size_t at = number(end + 16, 4);
        for (ArchiveEntry& entry : found) {
            if (number(at, 4) != 0x02014b50) return fail("no entry in the directory");
            at = read_entry(at, entry);
        }
        EXPECT_EQ(end, at);
        return found;
    }

    // The archive with the times of its entries taken out.
    std::string timeless() {
        std::string bytes = m_bytes;
        const std::size_t end = m_bytes.size() - 22;
        std::size_t at = number(end + 16, 4);
        for (std::size_t left = number(end + 10, 2); left > 0; --left) {
            bytes.replace(at + 12, 4, 4, '\0');
            bytes.replace(number(at + 42, 4) + 10, 4, 4, '\0');
            at += 46 + number(at + 28, 2) + number(at + 30, 2) + number(at + 32, 2);
        }
        return bytes;
    }

private:
    std::vector<ArchiveEntry> fail(const char* what) {
        ADD_FAILURE() << what;
        return {};
    }

    std::uint32_t number(std::size_t at, std::size_t size) const {
        std::uint32_t value = 0;
        for (std::size_t i = size; i-- > 0;) {
            value = value << 8 | static_cast<unsigned char>(at + i < m_bytes.size() ? m_bytes[at + i] : 0);
        }
        return value;
    }

    std::size_t read_entry(std::size_t at, ArchiveEntry& entry) {
        entry.flags = number(at + 8, 2);
        entry.method = number(at + 10, 2);
        entry.time = number(at + 12, 4);
        const std::size_t name_size = number(at + 28, 2);
        entry.extra_size = number(at + 30, 2);
        entry.comment_size = number(at + 32, 2);
        entry.external_attributes = number(at + 38, 4);
        entry.name = m_bytes.substr(at + 46, name_size);
        entry.data = inflated(number(at + 42, 4), number(at + 20, 4), number(at + 24, 4));
        EXPECT_EQ(number(at + 16, 4), checksum(entry.data)) << entry.name;
        return at + 46 + name_size + entry.extra_size + entry.comment_size;
    }

    static std::uint32_t checksum(const std::string& data) {
        return static_cast<std::uint32_t>(
            crc32(0, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(data.size())));
    }

    std::string inflated(std::size_t header, std::uint32_t packed, std::uint32_t size) {
        EXPECT_EQ(0x04034b50U, number(header, 4));
        const std::size_t start = header + 30 + number(header + 26, 2) + number(header + 28, 2);
        std::string in = m_bytes.substr(start, packed);
        std::string out(size, '\0');
        z_stream stream{};
        EXPECT_EQ(Z_OK, inflateInit2(&stream, -MAX_WBITS));
        stream.next_in = reinterpret_cast<Bytef*>(in.data());
        stream.avail_in = packed;
        stream.next_out = reinterpret_cast<Bytef*>(out.data());
        stream.avail_out = size;
        EXPECT_EQ(Z_STREAM_END, inflate(&stream, Z_FINISH));
        inflateEnd(&stream);
        return out;
    }

    const std::string& m_bytes;
};
