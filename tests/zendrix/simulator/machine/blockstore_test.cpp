#include "machine/blockstore.h"

#include <gtest/gtest.h>

#include "rig.h"

namespace zendrix::sim {
namespace {

using rig::refusal;

// Three blocks of ten bytes, twenty together.
BlocksDescription small() {
    BlocksDescription description;
    description.most = 3;
    description.longest = 10;
    description.total = 20;
    return description;
}

TEST(BlockStore, KeepsAnyBytesUnderAnyName) {
    BlockStore store{BlocksDescription()};
    const std::string names[] = {"a",  "../../etc/x", "C:\\x", std::string("n\0l", 3), "\xff\r\n\"\\",
                                 " x", "BLOCKS.LIST"};
    for (const std::string& name : names) store.put(name, name + std::string("\0\r\n", 3));
    for (const std::string& name : names) EXPECT_EQ(*store.find(name), name + std::string("\0\r\n", 3));
    EXPECT_EQ(refusal([&] { store.find("b"); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { store.find(""); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { store.find("n"); }), Error::invalid_argument);
}

TEST(BlockStore, BoundsTheNames) {
    BlockStore store{BlocksDescription()};
    EXPECT_EQ(refusal([&] { store.put("", "x"); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { store.put("blocks.list", "x"); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { store.put(std::string(1025, 'x'), "x"); }), Error::argument_out_of_range);
    EXPECT_EQ(refusal([&] { store.put(std::string(1024, 'x'), "x"); }), Error::none);
    EXPECT_EQ(store.blocks().size(), 1u);
}

TEST(BlockStore, BoundsTheirSizeAndNumber) {
    BlockStore store(small());
    EXPECT_EQ(refusal([&] { store.put("a", std::string(11, 'x')); }), Error::argument_out_of_range);
    store.put("a", std::string(10, 'x'));
    store.put("b", std::string(9, 'x'));
    EXPECT_EQ(refusal([&] { store.put("c", "xx"); }), Error::buffer_overrun);
    store.put("c", "x");
    EXPECT_EQ(refusal([&] { store.put("d", ""); }), Error::buffer_overrun);
    // In place of another there is room again.
    store.put("a", "");
    EXPECT_EQ(refusal([&] { store.put("b", std::string(10, 'y')); }), Error::none);
    EXPECT_EQ(*store.find("b"), std::string(10, 'y'));
    EXPECT_EQ(refusal([&] { store.put("c", std::string(10, 'y')); }), Error::none);
    EXPECT_EQ(refusal([&] { store.put("a", "y"); }), Error::buffer_overrun);
}

TEST(BlockStore, ListsThem) {
    BlockStore store{BlocksDescription()};
    EXPECT_EQ(*store.find("blocks.list"), "");
    store.put("b", "12345");
    store.put("a \"quoted\"\n", "");
    EXPECT_EQ(*store.find("blocks.list"), "\"a \\\"quoted\\\"\\n\" 0\n\"b\" 5\n");
}

TEST(BlockStore, WhatWasFoundStaysAsItIs) {
    BlockStore store{BlocksDescription()};
    store.put("a", "old");
    const BlockStore::Content found = store.find("a");
    store.put("a", "new");
    EXPECT_EQ(*found, "old");
    EXPECT_EQ(*store.find("a"), "new");
}

TEST(ComingBlock, IsThereWhenItIsWhole) {
    BlockStore store{BlocksDescription()};
    store.put("a", "old");
    ComingBlock coming(store, "a", 6);
    coming.add("one");
    EXPECT_FALSE(coming.is_whole());
    EXPECT_EQ(*store.find("a"), "old");
    EXPECT_EQ(refusal([&] { coming.add("four"); }), Error::argument_out_of_range);
    coming.add("two");
    ASSERT_TRUE(coming.is_whole());
    coming.keep();
    EXPECT_EQ(*store.find("a"), "onetwo");
}

TEST(ComingBlock, KeepsRoomUntilItGoes) {
    BlockStore store(small());
    EXPECT_EQ(refusal([&] { ComingBlock(store, "a", 11); }), Error::argument_out_of_range);
    {
        ComingBlock first(store, "a", 10);
        ComingBlock second(store, "b", 10);
        EXPECT_EQ(refusal([&] { ComingBlock(store, "c", 1); }), Error::buffer_overrun);
        EXPECT_EQ(refusal([&] { store.put("c", "x"); }), Error::buffer_overrun);
        second.add("0123456789");
        second.keep();
    }
    EXPECT_EQ(refusal([&] { store.put("c", "0123456789"); }), Error::none);
    EXPECT_EQ(refusal([&] { store.put("d", "x"); }), Error::buffer_overrun);
    EXPECT_FALSE(store.blocks().contains("a"));
}

}  // namespace
}  // namespace zendrix::sim
