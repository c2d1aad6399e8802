#include "image.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>

#include "os/path.h"

namespace os {
namespace {

// The file's bytes; whatever lies outside reads as 0.
class Bytes {
public:
    Bytes(const std::string& file, std::size_t most) {
        const std::filesystem::path path = native_path(file);
        std::error_code error;
        const std::uintmax_t size = std::filesystem::file_size(path, error);
        m_isThere = !error;  // a directory has no size
        if (!m_isThere) return;
        m_bytes.resize(std::min<std::uintmax_t>(size, most));
        std::ifstream in(path, std::ios::binary);
        in.read(m_bytes.data(), static_cast<std::streamsize>(m_bytes.size()));
        m_bytes.resize(static_cast<std::size_t>(in.gcount()));
    }

    bool is_there() const { return m_isThere; }
    bool is_empty() const { return m_bytes.empty(); }
    bool begins_with(std::string_view text, std::size_t at = 0) const {
        return m_bytes.size() >= at && std::string_view(m_bytes).substr(at).starts_with(text);
    }

    std::uint64_t number(std::uint64_t at, std::size_t size, bool is_big_endian = false) const {
        std::uint64_t result = 0;
        for (std::size_t i = 0; i < size; ++i)
            result = result << 8 | byte(at + (is_big_endian ? i : size - 1 - i));
        return result;
    }
    std::uint32_t u16(std::uint64_t at) const { return static_cast<std::uint32_t>(number(at, 2)); }
    std::uint32_t u32(std::uint64_t at) const { return static_cast<std::uint32_t>(number(at, 4)); }

    std::string text(std::uint64_t at) const {
        if (at >= m_bytes.size()) return "";
        const std::size_t begin = static_cast<std::size_t>(at);
        return m_bytes.substr(begin, m_bytes.find('\0', begin) - begin);
    }

private:
    unsigned char byte(std::uint64_t at) const {
        return at < m_bytes.size() ? static_cast<unsigned char>(m_bytes[static_cast<std::size_t>(at)]) : 0;
    }

    std::string m_bytes;
    bool m_isThere = false;
};

struct Machine {
    std::uint32_t elf;
    std::uint32_t pe;
    const char* name;
};

constexpr Machine machines[] = {{3, 0x14C, "32-bit x86"},
                                {62, 0x8664, "64-bit x86-64"},
                                {40, 0x1C4, "32-bit ARM"},
                                {183, 0xAA64, "64-bit ARM"}};

std::string machine_name(std::uint32_t Machine::*member, std::uint32_t number) {
    for (const Machine& machine : machines)
        if (machine.*member == number) return machine.name;
    return "machine " + std::to_string(number);
}

ImageKind library_for(const std::string& system, const std::string& machine) {
    return {system, machine, "a " + machine + " library for " + system};
}

constexpr std::size_t pe_offset_at = 0x3C;

bool is_pe(const Bytes& file) {
    return file.begins_with("MZ") && file.begins_with(std::string_view("PE\0\0", 4), file.u32(pe_offset_at));
}

// The parts of a library for Windows, found by their addresses in memory.
class PeImage {
public:
    explicit PeImage(const std::string& file) : m_bytes(file, most) {
        if (!is_pe(m_bytes)) return;
        const std::uint64_t header = m_bytes.u32(pe_offset_at) + 4;
        const std::uint64_t optional = header + 20;
        m_isWide = m_bytes.u16(optional) == 0x20B;
        m_directories = optional + (m_isWide ? 112 : 96);
        m_sections = optional + m_bytes.u16(header + 16);
        m_sectionCount = m_bytes.u16(header + 2);
    }

    std::vector<ImageImport> imports() const {
        std::vector<ImageImport> result;
        const auto table = directory(1);
        for (std::uint64_t at = table.value_or(0); at != 0 && m_bytes.u32(at + 12) != 0; at += 20) {
            const std::uint32_t names = m_bytes.u32(at);
            result.push_back({text(m_bytes.u32(at + 12)), thunk_names(names ? names : m_bytes.u32(at + 16))});
        }
        return result;
    }

    std::vector<std::string> exports() const {
        std::vector<std::string> result;
        const auto table = directory(0);
        if (!table) return result;
        const std::uint32_t count = m_bytes.u32(*table + 24);
        const auto names = place(m_bytes.u32(*table + 32));
        for (std::uint32_t n = 0; names && n < count && n < 65536; ++n)
            result.push_back(text(m_bytes.u32(*names + 4 * n)));
        return result;
    }

private:
    static constexpr std::size_t most = 256U << 20;

    std::optional<std::uint64_t> directory(std::uint32_t number) const {
        const std::uint32_t address = m_directories ? m_bytes.u32(m_directories + 8 * number) : 0;
        return address ? place(address) : std::nullopt;
    }

    // Where in the file the bytes lie that have this address in memory.
    std::optional<std::uint64_t> place(std::uint32_t address) const {
        for (std::uint32_t n = 0; n < m_sectionCount; ++n) {
            const std::uint64_t section = m_sections + 40 * n;
            const std::uint32_t begin = m_bytes.u32(section + 12);
            const std::uint32_t size = m_bytes.u32(section + 16);
            if (address >= begin && address - begin < size)
                return std::uint64_t{m_bytes.u32(section + 20)} + (address - begin);
        }
        return std::nullopt;
    }

    std::string text(std::uint32_t address) const {
        const auto at = place(address);
        return at ? m_bytes.text(*at) : "";
    }

    std::vector<std::string> thunk_names(std::uint32_t address) const {
        std::vector<std::string> result;
        const std::size_t size = m_isWide ? 8 : 4;
        for (auto at = place(address); at; *at += size) {
            const std::uint64_t thunk = m_bytes.number(*at, size);
            if (thunk == 0) break;
            const bool is_number = thunk >> (size * 8 - 1);
            if (!is_number) result.push_back(text(static_cast<std::uint32_t>(thunk) + 2));
        }
        return result;
    }

    Bytes m_bytes;
    bool m_isWide = false;
    std::uint64_t m_directories = 0;
    std::uint64_t m_sections = 0;
    std::uint32_t m_sectionCount = 0;
};

}  // namespace

ImageKind image_kind(const std::string& file) {
    const Bytes bytes(file, 4096);
    if (!bytes.is_there()) return {"", "", "no file"};
    if (bytes.is_empty()) return {"", "", "an empty file"};
    if (is_pe(bytes))
        return library_for("Windows", machine_name(&Machine::pe, bytes.u16(bytes.u32(pe_offset_at) + 4)));
    if (!bytes.begins_with("\x7F"
                           "ELF"))
        return {"", "", "no library"};
    constexpr std::uint64_t order_at = 5;
    const bool is_big_endian = bytes.number(order_at, 1) == 2;
    const auto machine = static_cast<std::uint32_t>(bytes.number(18, 2, is_big_endian));
    return library_for("Linux", machine_name(&Machine::elf, machine));
}

std::vector<ImageImport> image_imports(const std::string& file) { return PeImage(file).imports(); }

std::vector<std::string> image_exports(const std::string& file) { return PeImage(file).exports(); }

}  // namespace os
