// Base64 of 64 KB in place against OpenSSL's, which needs a second buffer.
#include <glib.h>
#include <openssl/evp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <string>

#include "comparison.h"
#include "mbase64.h"
#include "mbase64_groups.h"
#include "own_process.h"

namespace {

constexpr std::size_t size = 64 * 1024;
constexpr std::size_t encoded_size = (size + 2) / 3 * 4;
constexpr int calls = 100;  // in a round

std::string data() {
    std::mt19937_64 random(1);
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

std::string encoded() {
    std::string text = data();
    text.resize(encoded_size);
    MBase64_Encode(text.data(), text.data(), ~size);
    return text;
}

unsigned char* bytes_of(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

// The two buffers of a way: it finds its input in the first.
struct Buffers {
    std::string first;
    std::string second;
};

using Work = std::size_t (*)(Buffers&);

// The median nanoseconds a KB of data; before each call the first buffer is filled anew.
bench::Measure each_call(Work work, const std::string& input) {
    const auto buffers = std::make_shared<Buffers>();
    buffers->first.resize(2 * size);
    buffers->second.resize(2 * size);
    return [work, input, buffers] {
        std::vector<double> costs;
        for (int i = 0; i < calls; ++i) {
            std::copy(input.begin(), input.end(), buffers->first.begin());
            costs.push_back(bench::wall_time([&] { bench::keep(work(*buffers)); }, size / 1024)());
        }
        std::nth_element(costs.begin(), costs.begin() + calls / 2, costs.end());
        return costs[calls / 2];
    };
}

bench::Measure encoding(Work work) {
    return bench::in_own_process([work] { return each_call(work, data()); });
}

bench::Measure decoding(Work work) {
    return bench::in_own_process([work] { return each_call(work, encoded()); });
}

std::size_t encode_ours(Buffers& buffers) {
    return static_cast<std::size_t>(MBase64_Encode(buffers.first.data(), buffers.first.data(), ~size));
}

// But for the last byte, which is a group of its own.
std::size_t encode_plain(Buffers& buffers) {
    base64::encode_plain(buffers.first.data(), buffers.first.data(), size / 3);
    return size;
}

std::size_t encode_openssl(Buffers& buffers) {
    return static_cast<std::size_t>(EVP_EncodeBlock(bytes_of(buffers.second), bytes_of(buffers.first), size));
}

std::size_t encode_glib(Buffers& buffers) {
    gint state = 0;
    gint save = 0;
    char* const out = buffers.second.data();
    std::size_t count = g_base64_encode_step(bytes_of(buffers.first), size, 0, out, &state, &save);
    count += g_base64_encode_close(0, out + count, &state, &save);
    return count;
}

std::size_t decode_ours(Buffers& buffers) {
    char* const text = buffers.first.data();
    return static_cast<std::size_t>(MBase64_Decode(text, text, ~encoded_size));
}

std::size_t decode_plain(Buffers& buffers) {
    return base64::decode_plain(buffers.first.data(), buffers.first.data(), size / 3);
}

std::size_t decode_openssl(Buffers& buffers) {
    return static_cast<std::size_t>(
        EVP_DecodeBlock(bytes_of(buffers.second), bytes_of(buffers.first), encoded_size));
}

std::size_t decode_glib(Buffers& buffers) {
    gint state = 0;
    guint save = 0;
    return g_base64_decode_step(buffers.first.data(), encoded_size, bytes_of(buffers.second), &state, &save);
}

std::size_t copy(Buffers& buffers) {
    std::memcpy(buffers.second.data(), buffers.first.data(), size);
    return size;
}

// All ways must come to the same result.
void check() {
    Buffers buffers{data(), std::string(2 * size, '\0')};
    buffers.first.resize(2 * size);
    const std::string text = encoded();
    bool same = encode_openssl(buffers) == encoded_size && buffers.second.compare(0, encoded_size, text) == 0;
    same = same && encode_glib(buffers) == encoded_size && buffers.second.compare(0, encoded_size, text) == 0;
    buffers.first.replace(0, encoded_size, text);
    decode_openssl(buffers);
    same = same && buffers.second.compare(0, size, data()) == 0;
    decode_glib(buffers);
    same = same && buffers.second.compare(0, size, data()) == 0;
    decode_ours(buffers);
    if (same && buffers.first.compare(0, size, data()) == 0) return;
    std::fprintf(stderr, "base64_bench: the ways differ\n");
    std::exit(1);
}

}  // namespace

int main() {
    check();
    bench::print_head("OpenSSL's EVP_EncodeBlock and EVP_DecodeBlock, into a second buffer; ns a KB of data");
    bench::compare({.name = "MBase64_Encode, 64 KB in place",
                    .ours = encoding(encode_ours),
                    .reference = encoding(encode_openssl),
                    .limit = 0.8,
                    .aim = 0.2,
                    .others = {{"glib", encoding(encode_glib)}, {"memcpy", encoding(copy)}}});
    bench::compare({.name = "the same without vector instructions",
                    .ours = encoding(encode_plain),
                    .reference = encoding(encode_openssl),
                    .limit = 0.8,
                    .aim = 0.55});
    bench::compare({.name = "MBase64_Decode, 64 KB in place",
                    .ours = decoding(decode_ours),
                    .reference = decoding(decode_openssl),
                    .limit = 1.05,
                    .aim = 0.2,
                    .others = {{"glib", decoding(decode_glib)}, {"memcpy", decoding(copy)}}});
    bench::compare({.name = "the same without vector instructions",
                    .ours = decoding(decode_plain),
                    .reference = decoding(decode_openssl),
                    .limit = 1.05,
                    .aim = 0.6});
}
