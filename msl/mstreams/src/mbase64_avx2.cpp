// Compiled for AVX2. No header with inline functions may come in here: the linker could take theirs from
// this file for the whole program, and a machine without AVX2 would run them.
#include "mbase64_avx2.h"

#include <immintrin.h>

namespace base64::avx2 {

namespace {

constexpr std::size_t step = 8;  // groups: 24 bytes, 32 characters

// Tables are of 16 bytes, one for each half of a vector.
__m256i twice(__m128i half) { return _mm256_broadcastsi128_si256(half); }

// Twelve bytes in each half to sixteen values of six bits.
__m256i spread(__m256i bytes) {
    // Each lane gets the three bytes of a group, b a c b from low to high.
    const __m256i lanes =
        _mm256_shuffle_epi8(bytes, twice(_mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10)));
    const __m256i first_and_third = _mm256_mulhi_epu16(_mm256_and_si256(lanes, _mm256_set1_epi32(0x0FC0FC00)),
                                                       _mm256_set1_epi32(0x04000040));
    const __m256i second_and_fourth = _mm256_mullo_epi16(
        _mm256_and_si256(lanes, _mm256_set1_epi32(0x003F03F0)), _mm256_set1_epi32(0x01000010));
    return _mm256_or_si256(first_and_third, second_and_fourth);
}

__m256i to_characters(__m256i values) {
    // How far a value is from its character: for A to Z, a to z, ten digits, + and /.
    const __m256i offsets =
        twice(_mm_setr_epi8('A', 'a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                            '0' - 52, '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 0, 0));
    const __m256i above_upper = _mm256_cmpgt_epi8(values, _mm256_set1_epi8(25));
    const __m256i kind = _mm256_sub_epi8(_mm256_subs_epu8(values, _mm256_set1_epi8(51)), above_upper);
    return _mm256_add_epi8(values, _mm256_shuffle_epi8(offsets, kind));
}

// Both halves of a character; four bits each.
__m256i low_half(__m256i text) { return _mm256_and_si256(text, _mm256_set1_epi8(0x0F)); }
__m256i high_half(__m256i text) { return low_half(_mm256_srli_epi32(text, 4)); }

// A bit for each kind of character that the high half allows, and for each that the low half rules out: one
// that is in both is illegal.
bool all_legal(__m256i text) {
    const __m256i by_low = twice(_mm_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11,
                                               0x13, 0x1A, 0x1B, 0x1B, 0x1B, 0x1A));
    const __m256i by_high = twice(_mm_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10,
                                                0x10, 0x10, 0x10, 0x10, 0x10, 0x10));
    const __m256i both = _mm256_and_si256(_mm256_shuffle_epi8(by_low, low_half(text)),
                                          _mm256_shuffle_epi8(by_high, high_half(text)));
    return _mm256_movemask_epi8(_mm256_cmpgt_epi8(both, _mm256_setzero_si256())) == 0;
}

__m256i to_values(__m256i text) {
    // By the high half; '/' alone shares its high half with '+', and goes one back.
    const __m256i offsets = twice(_mm_setr_epi8(0, 63 - '/', 62 - '+', 52 - '0', 0 - 'A', 0 - 'A', 26 - 'a',
                                                26 - 'a', 0, 0, 0, 0, 0, 0, 0, 0));
    const __m256i is_slash = _mm256_cmpeq_epi8(text, _mm256_set1_epi8('/'));
    return _mm256_add_epi8(text, _mm256_shuffle_epi8(offsets, _mm256_add_epi8(high_half(text), is_slash)));
}

// 32 values of six bits to 24 bytes, in front of eight zeros.
__m256i join(__m256i values) {
    const __m256i twelve_bits = _mm256_maddubs_epi16(values, _mm256_set1_epi32(0x01400140));
    const __m256i groups = _mm256_madd_epi16(twelve_bits, _mm256_set1_epi32(0x00011000));
    const __m256i bytes = _mm256_shuffle_epi8(
        groups, twice(_mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1)));
    return _mm256_permutevar8x32_epi32(bytes, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
}

// Twelve bytes in each half, and the four bytes behind them.
__m256i load_halves(const char* source) {
    const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source));
    const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + 12));
    return _mm256_inserti128_si256(_mm256_castsi128_si256(first), second, 1);
}

__m256i load(const char* source) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source)); }
void store(char* target, __m256i bytes) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(target), bytes); }

}  // namespace

std::size_t encode(char* target, const char* source, std::size_t groups) {
    for (; groups >= step; groups -= step) {
        const std::size_t first = groups - step;
        store(target + 4 * first, to_characters(spread(load_halves(source + 3 * first))));
    }
    return groups;
}

std::size_t decode(char* target, const char* source, std::size_t groups) {
    // 32 bytes are stored where 24 count: three more groups must come, which write over the rest.
    constexpr std::size_t behind = 3;
    std::size_t done = 0;
    for (; groups - done >= step + behind; done += step) {
        const __m256i text = load(source + 4 * done);
        if (!all_legal(text)) break;
        store(target + 3 * done, join(to_values(text)));
    }
    return done;
}

}  // namespace base64::avx2
