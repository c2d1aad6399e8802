// The named blocks of data that the machine keeps: any bytes under any name, bounded in count and in memory.
//
// What can't be kept or found throws Refused, and nothing has changed then. One thread.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "machine/description.h"

namespace zendrix::sim {

// Receiving this name gives a list of the blocks, a line each: `"NAME" SIZE` and LF. Nobody can send it.
inline constexpr std::string_view block_list_name = "blocks.list";

class BlockStore {
public:
    using Content = std::shared_ptr<const std::string>;
    using Blocks = std::map<std::string, Content, std::less<>>;

    explicit BlockStore(const BlocksDescription& description);

    const Blocks& blocks() const { return m_blocks; }
    // The block of this name, or the list of all. What was found stays as it is if the block is replaced.
    Content find(const std::string& name) const;
    // In place of an older block of this name.
    void put(const std::string& name, std::string content);

    // Would a block of this name and size be kept now, beside an older one of this name?
    void require_room(const std::string& name, std::size_t size) const;

private:
    friend class ComingBlock;

    void require_good(const std::string& name, std::size_t size) const;

    std::size_t m_most;
    std::size_t m_longest;
    std::size_t m_total;
    std::size_t m_bytes = 0;  // kept and expected
    Blocks m_blocks;
};

// A block that comes in parts. Room for the whole is kept for it from the begin, and nobody sees it before it
// is whole.
class ComingBlock {
public:
    ComingBlock(BlockStore& store, std::string name, std::size_t size);
    ~ComingBlock();
    ComingBlock(const ComingBlock&) = delete;
    ComingBlock& operator=(const ComingBlock&) = delete;

    const std::string& name() const { return m_name; }
    // The next bytes, which may not be more than was told.
    void add(std::string_view part);
    bool is_whole() const { return m_content.size() == m_size; }
    // Once it is whole; nothing is left here afterwards.
    void keep();

private:
    BlockStore& m_store;
    std::string m_name;
    std::size_t m_size;
    std::string m_content;
};

}  // namespace zendrix::sim
