// The ways of doing whole groups must come to the same result. Buffers are exactly as large as they must be,
// so that the address sanitizer sees a step beyond.
#include "mbase64_groups.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <memory>
#include <string>

namespace {

constexpr std::size_t behind = 4;  // bytes that encoding may read

// A buffer of its own on the heap.
class Buffer {
public:
    explicit Buffer(const std::string& bytes, std::size_t size = 0)
        : m_size(std::max(size, bytes.size())), m_bytes(std::make_unique<char[]>(m_size)) {
        bytes.copy(m_bytes.get(), bytes.size());
    }
    char* data() { return m_bytes.get(); }
    std::string text(std::size_t size) const { return {m_bytes.get(), size}; }

private:
    std::size_t m_size;
    std::unique_ptr<char[]> m_bytes;
};

std::string random_bytes(std::size_t size) {
    return *rc::gen::container<std::string>(size, rc::gen::arbitrary<char>());
}

std::string encoded_plainly(const std::string& bytes, std::size_t groups) {
    Buffer target("", 4 * groups);
    base64::encode_plain(target.data(), Buffer(bytes).data(), groups);
    return target.text(4 * groups);
}

RC_GTEST_PROP(Base64GroupsTest, VectorsEncodeAsThePlainWayDoes, ()) {
    const std::size_t groups = *rc::gen::inRange<std::size_t>(0, 100);
    const std::string bytes = random_bytes(3 * groups + behind);
    const std::string expected = encoded_plainly(bytes, groups);
    Buffer target("", 4 * groups);
    const std::size_t left = base64::encode_vector(target.data(), Buffer(bytes).data(), groups);
    RC_ASSERT(left <= groups);
    RC_ASSERT(target.text(4 * groups).substr(4 * left) == expected.substr(4 * left));
    // In one buffer, and the rest by the other way.
    Buffer both(bytes, 4 * groups);
    base64::encode_plain(both.data(), both.data(), base64::encode_vector(both.data(), both.data(), groups));
    RC_ASSERT(both.text(4 * groups) == expected);
}

RC_GTEST_PROP(Base64GroupsTest, VectorsDecodeAsThePlainWayDoes, ()) {
    const std::size_t groups = *rc::gen::inRange<std::size_t>(0, 100);
    const std::string bytes = random_bytes(3 * groups + behind);
    const std::string text = encoded_plainly(bytes, groups);
    Buffer target("", 3 * groups);
    const std::size_t done = base64::decode_vector(target.data(), Buffer(text).data(), groups);
    RC_ASSERT(done <= groups);
    RC_ASSERT(target.text(3 * done) == bytes.substr(0, 3 * done));
    Buffer plain("", 3 * groups + 1);
    RC_ASSERT(base64::decode_plain(plain.data(), Buffer(text).data(), groups) == groups);
    RC_ASSERT(plain.text(3 * groups) == bytes.substr(0, 3 * groups));
    Buffer both(text, 3 * groups + 1);
    const std::size_t first = base64::decode_vector(both.data(), both.data(), groups);
    RC_ASSERT(base64::decode_plain(both.data() + 3 * first, both.data() + 4 * first, groups - first) ==
              groups - first);
    RC_ASSERT(both.text(3 * groups) == bytes.substr(0, 3 * groups));
}

// Every byte in every place of a vector: what is no value is left to the plain way, which takes a '=' and
// stops at all others.
TEST(Base64GroupsTest, NoWayTakesAnIllegalByte) {
    constexpr std::size_t groups = 24;
    const std::string legal(4 * groups, 'Q');
    for (int byte = 0; byte < 256; ++byte) {
        const int value = base64::value_of(static_cast<char>(byte));
        for (std::size_t place = 0; place < 64; ++place) {
            std::string text = legal;
            text[place] = static_cast<char>(byte);
            Buffer target("", 3 * groups + 1);
            const std::size_t done = base64::decode_vector(target.data(), text.data(), groups);
            const std::size_t all = base64::decode_plain(target.data(), text.data(), groups);
            if (value == base64::illegal) {
                EXPECT_EQ(place / 4, all) << byte << " at " << place;
            } else {
                EXPECT_EQ(groups, all) << byte << " at " << place;
            }
            if (value == base64::illegal || value == base64::padding) {
                EXPECT_LE(done, place / 4) << byte << " at " << place;
            }
        }
    }
}

TEST(Base64GroupsTest, APaddingInsideSpoilsTheSextetBeforeIt) {
    // 'A' is 0 and '=' has one bit more than a sextet.
    Buffer target("", 4);
    EXPECT_EQ(1U, base64::decode_plain(target.data(), "A=AA", 1));
    EXPECT_EQ(std::string("\x04\0\0", 3), target.text(3));
}

}  // namespace
