#include "callbackslot.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Function = void (*)(std::string& out);
using Slot = serverdll::CallbackSlot<Function>;

void one(std::string& out) { out += '1'; }
void two(std::string& out) { out += '2'; }

// Runs the slot `count` times; `between` is called behind each run, with its number.
template <typename Between>
std::string run(Slot& slot, std::size_t count, Between&& between) {
    std::string out;
    slot.run(count, [&](Function function, void*, std::size_t i) {
        function(out);
        between(i);
    });
    return out;
}

TEST(CallbackSlot, WithoutACallbackNothingRuns) {
    Slot slot;
    EXPECT_EQ(run(slot, 3, [](std::size_t) {}), "");
}

TEST(CallbackSlot, AReplacementTakesEffectBeforeTheNextRun) {
    Slot slot;
    slot.set(one, nullptr);
    EXPECT_EQ(run(slot, 4,
                  [&](std::size_t i) {
                      if (i == 1) slot.set(two, nullptr);
                  }),
              "1122");
    EXPECT_EQ(run(slot, 4,
                  [&](std::size_t i) {
                      if (i == 1) slot.set(nullptr, nullptr);
                  }),
              "22");
    slot.set(one, nullptr);
    EXPECT_EQ(run(slot, 4,
                  [&](std::size_t i) {
                      if (i == 0) slot.drop();
                  }),
              "1");
}

TEST(CallbackSlot, RunsMayNest) {
    Slot slot;
    slot.set(one, nullptr);
    std::string inner;
    EXPECT_EQ(run(slot, 2,
                  [&](std::size_t) { inner += run(slot, 1, [&](std::size_t) { slot.set(two, nullptr); }); }),
              "12");
    EXPECT_EQ(inner, "12");
}

}  // namespace
