#include "machine/blockstore.h"

#include <utility>

#include "machine/error.h"
#include "tokens.h"

namespace zendrix::sim {

namespace {

constexpr std::size_t longest_name = 1024;

std::string list_of(const BlockStore::Blocks& blocks) {
    std::string list;
    for (const auto& [name, content] : blocks) {
        wire::append_quoted(list, name);
        list.append(" ").append(std::to_string(content->size())).append("\n");
    }
    return list;
}

}  // namespace

BlockStore::BlockStore(const BlocksDescription& description)
    : m_most(description.most), m_longest(description.longest), m_total(description.total) {
    for (const auto& [name, content] : description.blocks) put(name, content);
}

BlockStore::Content BlockStore::find(const std::string& name) const {
    if (name == block_list_name) return std::make_shared<const std::string>(list_of(m_blocks));
    const auto found = m_blocks.find(name);
    if (found == m_blocks.end()) throw Refused{Error::invalid_argument};
    return found->second;
}

void BlockStore::put(const std::string& name, std::string content) {
    require_good(name, content.size());
    const auto found = m_blocks.find(name);
    const std::size_t older = found == m_blocks.end() ? 0 : found->second->size();
    if (m_bytes - older + content.size() > m_total) throw Refused{Error::buffer_overrun};
    m_bytes = m_bytes - older + content.size();
    m_blocks.insert_or_assign(name, std::make_shared<const std::string>(std::move(content)));
}

void BlockStore::require_room(const std::string& name, std::size_t size) const {
    require_good(name, size);
    if (m_bytes + size > m_total) throw Refused{Error::buffer_overrun};
}

void BlockStore::require_good(const std::string& name, std::size_t size) const {
    if (name.empty() || name == block_list_name) throw Refused{Error::invalid_argument};
    if (name.size() > longest_name || size > m_longest) throw Refused{Error::argument_out_of_range};
    if (m_blocks.size() >= m_most && !m_blocks.contains(name)) throw Refused{Error::buffer_overrun};
}

ComingBlock::ComingBlock(BlockStore& store, std::string name, std::size_t size)
    : m_store(store), m_name(std::move(name)), m_size(size) {
    m_store.require_room(m_name, m_size);
    m_store.m_bytes += m_size;
}

ComingBlock::~ComingBlock() { m_store.m_bytes -= m_size; }

void ComingBlock::add(std::string_view part) {
    if (part.size() > m_size - m_content.size()) throw Refused{Error::argument_out_of_range};
    m_content.append(part);
}

void ComingBlock::keep() {
    m_store.m_bytes -= std::exchange(m_size, 0);
    m_store.put(m_name, std::move(m_content));
}

}  // namespace zendrix::sim
