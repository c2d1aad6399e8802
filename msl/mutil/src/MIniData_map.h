// An ordered map from names to objects, made for many small entries: it takes half the memory of a tree, and
// what is compared lies close together.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include "MIniData_name.h"

// Doesn't own the objects. Names stand in sorted blocks, and the blocks in order. A change invalidates all
// iterators but the one that it returns.
template <class T, class Compare>
class MIniDataMap {
public:
    struct Item {
        MIniDataName first;
        T* second = nullptr;
    };

    class const_iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Item;
        using difference_type = std::ptrdiff_t;
        using pointer = const Item*;
        using reference = const Item&;

        const_iterator() = default;
        reference operator*() const { return m_map->m_blocks[m_block][m_index]; }
        pointer operator->() const { return &**this; }
        const_iterator& operator++() {
            if (++m_index == m_map->m_blocks[m_block].size()) *this = {m_map, m_block + 1, 0};
            return *this;
        }
        const_iterator operator++(int) { return std::exchange(*this, std::next(*this)); }
        bool operator==(const const_iterator&) const = default;

    private:
        friend class MIniDataMap;
        const_iterator(const MIniDataMap* map, std::size_t block, std::size_t index)
            : m_map(map), m_block(block), m_index(index) {}

        const MIniDataMap* m_map = nullptr;
        std::size_t m_block = 0;
        std::size_t m_index = 0;
    };

    MIniDataMap() = default;
    MIniDataMap(const MIniDataMap&) = delete;
    MIniDataMap& operator=(const MIniDataMap&) = delete;
    ~MIniDataMap() { clear(); }

    const_iterator begin() const { return {this, 0, 0}; }
    const_iterator end() const { return {this, m_blocks.size(), 0}; }
    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }

    // The first item whose name doesn't come before this one.
    const_iterator lower_bound(std::string_view name) const {
        const auto before = [](const Item& item, std::string_view wanted) {
            return Compare{}(item.first.view(), wanted);
        };
        // In the first block whose last name doesn't come before it.
        const auto block = std::partition_point(
            m_blocks.begin(), m_blocks.end(), [&](const Block& items) { return before(items.back(), name); });
        if (block == m_blocks.end()) return end();
        const auto item = std::lower_bound(block->begin(), block->end(), name, before);
        return {this, static_cast<std::size_t>(block - m_blocks.begin()),
                static_cast<std::size_t>(item - block->begin())};
    }

    const_iterator find(std::string_view name) const {
        const const_iterator place = lower_bound(name);
        return is_at(place, name) ? place : end();
    }
    bool contains(std::string_view name) const { return is_at(lower_bound(name), name); }

    // Whether the item of this name stands where lower_bound found the name's place.
    bool is_at(const_iterator place, std::string_view name) const {
        return place != end() && !Compare{}(name, place->first.view());
    }

    // The name must not be there yet, and its lower bound must be `place`.
    void emplace_hint(const_iterator place, std::string_view name, T* object) {
        Block& block = room_at(place);
        if (block.size() == block.capacity()) block.reserve(std::min(block.size() + growth, largest_block));
        block.insert(block.begin() + static_cast<std::ptrdiff_t>(place.m_index),
                     Item{MIniDataName::make(name), object});
        ++m_size;
    }

    // Nothing is changed if the name is there.
    void emplace(std::string_view name, T* object) {
        const const_iterator place = lower_bound(name);
        if (!is_at(place, name)) emplace_hint(place, name, object);
    }

    // Returns where the next item is then.
    const_iterator erase(const_iterator place) {
        Block& block = m_blocks[place.m_block];
        place->first.give_back();
        block.erase(block.begin() + static_cast<std::ptrdiff_t>(place.m_index));
        --m_size;
        if (block.empty()) {
            m_blocks.erase(m_blocks.begin() + static_cast<std::ptrdiff_t>(place.m_block));
        } else if (place.m_index < block.size()) {
            return place;
        } else {
            ++place.m_block;
        }
        return {this, place.m_block, 0};
    }

    void clear() {
        for (const Item& item : *this) item.first.give_back();
        m_blocks.clear();
        m_size = 0;
    }

    void swap(MIniDataMap& other) noexcept {
        m_blocks.swap(other.m_blocks);
        std::swap(m_size, other.m_size);
    }

private:
    using Block = std::vector<Item>;

    static constexpr std::size_t largest_block = 64;
    static constexpr std::size_t growth = 8;

    // The block that takes a new item; `place` is moved to stand in it.
    Block& room_at(const_iterator& place) {
        if (place.m_block == m_blocks.size()) {
            // Behind all others: names that come in order fill their blocks.
            if (m_blocks.empty() || m_blocks.back().size() == largest_block) {
                return m_blocks.emplace_back();
            }
            place = {this, m_blocks.size() - 1, m_blocks.back().size()};
        } else if (m_blocks[place.m_block].size() == largest_block) {
            split(place.m_block);
            if (place.m_index > largest_block / 2) {
                place = {this, place.m_block + 1, place.m_index - largest_block / 2};
            }
        }
        return m_blocks[place.m_block];
    }

    // Moves the second half to a block of its own behind it.
    void split(std::size_t index) {
        Block second;
        second.reserve(largest_block);
        Block& first = m_blocks[index];
        const auto middle = first.begin() + largest_block / 2;
        second.assign(middle, first.end());
        first.erase(middle, first.end());
        m_blocks.insert(m_blocks.begin() + static_cast<std::ptrdiff_t>(index) + 1, std::move(second));
    }

    std::vector<Block> m_blocks;  // none is empty
    std::size_t m_size = 0;
};
