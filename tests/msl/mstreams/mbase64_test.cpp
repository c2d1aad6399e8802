#include "mbase64.h"

#include <cstring>

#include "reports.h"
#include "stl_utilities.h"

namespace {

using Base64Test = ReportsTest;

// The simplest encoder there is, to compare with.
std::string reference(const std::string& bytes) {
    static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t bit = 0; bit < bytes.size() * 8; bit += 6) {
        unsigned value = 0;
        for (std::size_t b = bit; b < bit + 6; ++b) {
            const unsigned byte = b / 8 < bytes.size() ? static_cast<unsigned char>(bytes[b / 8]) : 0;
            value = value << 1 | (byte >> (7 - b % 8) & 1);
        }
        text += alphabet[value];
    }
    while (text.size() % 4 != 0) text += '=';
    return text;
}

std::string bytes_of(std::size_t size, unsigned seed) {
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i) {
        seed = seed * 1664525U + 1013904223U;
        bytes += static_cast<char>(seed >> 24);
    }
    return bytes;
}

TEST_F(Base64Test, KnownTexts) {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
    };
    for (const auto& [bytes, text] : cases) {
        std::string s = bytes;
        EXPECT_TRUE(stl_encode_base64(s));
        EXPECT_EQ(text, s);
        EXPECT_TRUE(stl_decode_base64(s));
        EXPECT_EQ(bytes, s);
    }
}

TEST_F(Base64Test, BothWaysInPlaceForEveryLength) {
    for (std::size_t size = 0; size < 300; ++size) {
        const std::string bytes = bytes_of(size, static_cast<unsigned>(size));
        std::string s = bytes;
        EXPECT_TRUE(stl_encode_base64(s));
        EXPECT_EQ(reference(bytes), s);
        EXPECT_EQ(bytes, stl_decode_base64(static_cast<const std::string&>(s)));
        EXPECT_TRUE(stl_decode_base64(s));
        EXPECT_EQ(bytes, s);
    }
}

TEST_F(Base64Test, ThePlainFormTerminates) {
    char target[16];
    std::memset(target, 'x', sizeof target);
    EXPECT_EQ(9U, MBase64_EncodedSize(4));
    EXPECT_EQ(8, MBase64_Encode(target, "foob", 4));
    EXPECT_STREQ("Zm9vYg==", target);
    EXPECT_EQ(5U, MBase64_DecodedSize(target, 8));
    EXPECT_EQ(4, MBase64_Decode(target, target, 8));
    EXPECT_STREQ("foob", target);
    EXPECT_EQ(1U, MBase64_EncodedSize(0));
    EXPECT_EQ(0, MBase64_Encode(target, nullptr, 0));
    EXPECT_STREQ("", target);
    EXPECT_EQ(1U, MBase64_DecodedSize(nullptr, 0));
    target[0] = 'x';
    EXPECT_EQ(0, MBase64_Decode(target, nullptr, 0));
    EXPECT_STREQ("", target);
}

TEST_F(Base64Test, TheComplementFormDoesNot) {
    char target[16];
    std::memset(target, 'x', sizeof target);
    EXPECT_EQ(4U, MBase64_EncodedSize(~std::size_t{3}));
    EXPECT_EQ(4, MBase64_Encode(target, "foo", ~std::size_t{3}));
    EXPECT_EQ("Zm9vx", std::string(target, 5));
    EXPECT_EQ(3U, MBase64_DecodedSize("Zm9v", ~std::size_t{4}));
    EXPECT_EQ(3, MBase64_Decode(target, "YmFy", ~std::size_t{4}));
    EXPECT_EQ("barvx", std::string(target, 5));
    EXPECT_EQ(0U, MBase64_EncodedSize(~std::size_t{0}));
    EXPECT_EQ(0U, MBase64_DecodedSize(nullptr, ~std::size_t{0}));
    EXPECT_EQ(0, MBase64_Decode(target, nullptr, ~std::size_t{0}));
    EXPECT_EQ("barvx", std::string(target, 5));
}

TEST_F(Base64Test, PaddingInAWrongPlace) {
    char target[8];
    EXPECT_EQ(2, MBase64_Decode(target, "ab=c", 4));
    // One byte, and the NUL; two are written.
    EXPECT_EQ(1U, MBase64_DecodedSize("ab=c", ~std::size_t{4}));
    EXPECT_EQ(2U, MBase64_DecodedSize("ab=c", 4));
    std::string s = "ab=c";
    EXPECT_TRUE(stl_decode_base64(s));
    EXPECT_EQ("i", s);
    EXPECT_EQ(6, MBase64_Decode(target, "a==aZm9v", ~std::size_t{8}));
}

struct BadText {
    const char* text;
    const char* report;
};

TEST_F(Base64Test, IllegalTextsAreRefused) {
    const char* const outside = "MBase64_Decode(): illegal character 0xffffffff read, terminating";
    const char* const padding = "MBase64_Decode(): illegal character 0x40 read, terminating";
    const BadText cases[] = {
        {"a===", padding},        {"====", padding},    {"ab c", outside},    {"Zm9v\nAAA", outside},
        {"\x80QQQZm9v", outside}, {"QQ\xFFQ", outside}, {"QQQ\x7F", outside}, {"Z-9v", outside},
    };
    for (const BadText& bad : cases) {
        char target[16];
        EXPECT_EQ(-1, MBase64_Decode(target, bad.text, std::strlen(bad.text)));
        EXPECT_EQ(Texts{bad.report}, trace_reports()) << bad.text;
    }
    EXPECT_EQ("msl/mstreams/src/mbase64", recording::error_trace_places().front().source);
}

TEST_F(Base64Test, EveryIllegalByteIsRefusedInEveryPlace) {
    const std::string legal = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        if (legal.find(c) != legal.npos) continue;
        for (std::size_t place = 0; place < 8; ++place) {
            std::string text = "Zm9vYmFy";
            text[place] = c;
            char target[16];
            EXPECT_EQ(-1, MBase64_Decode(target, text.data(), text.size())) << byte << " at " << place;
        }
    }
    trace_reports();
}

TEST_F(Base64Test, LengthsMustBeMultiplesOfFour) {
    char target[8];
    EXPECT_EQ(-1, MBase64_Decode(target, "abc", 3));
    EXPECT_EQ(-1, MBase64_Decode(target, "abc", ~std::size_t{3}));
    const std::string report = "MBase64_Decode(): source_len has to be multiple of 4, not 3";
    EXPECT_EQ((Texts{report, report}), trace_reports());
}

TEST_F(Base64Test, TrailingNulsAreNoPartOfTheText) {
    using namespace std::string_literals;
    std::string s = "QQ==\0\0\0"s;
    EXPECT_TRUE(stl_decode_base64(s));
    EXPECT_EQ("A", s);
    s = "\0\0"s;
    EXPECT_TRUE(stl_decode_base64(s));
    EXPECT_EQ("", s);
}

TEST_F(Base64Test, AFailureEmptiesTheString) {
    std::string s = "ab c";
    EXPECT_FALSE(stl_decode_base64(s));
    EXPECT_EQ("", s);
    EXPECT_EQ((Texts{"MBase64_Decode(): illegal character 0xffffffff read, terminating",
                     "stl_decode_base64(): MBase64_Decode(18446744073709551611) failed (3)"}),
              trace_reports());
    EXPECT_EQ("", stl_decode_base64(std::string("a")));
    trace_reports();
}

}  // namespace
