// SPDX-License-Identifier: MIT
// base64 in both directions beside the block functions of OpenSSL.

#include "bench/promises.h"

#include <cstring>
#include <libvexa.h>
#include <openssl/evp.h>
#include <random>

namespace {

constexpr size_t sizes[] = {512, size_t{1} << 20};

struct sample {
    std::vector<unsigned char> bytes;
    std::string text, text_out;
    std::vector<unsigned char> bytes_out;

    explicit sample(size_t size)
        : bytes(size), text_out(base64_encode_len(unsigned(size)), '\0'), bytes_out(size + 3) // EVP counts the padding
    {
        std::mt19937 random{1};
        for (unsigned char &byte : bytes)
            byte = static_cast<unsigned char>(random());
        base64rfc_encode(text_out.data(), bytes.data(), unsigned(size));
        text = text_out.c_str();
    }
};

using work = void (*)(sample &);

void encode_vexa(sample &s)
{
    base64rfc_encode(s.text_out.data(), s.bytes.data(), unsigned(s.bytes.size()));
}
void decode_vexa(sample &s)
{
    base64_decode(s.bytes_out.data(), s.text.c_str());
}
void encode_openssl(sample &s)
{
    EVP_EncodeBlock(reinterpret_cast<unsigned char *>(s.text_out.data()), s.bytes.data(), int(s.bytes.size()));
}
void decode_openssl(sample &s)
{
    EVP_DecodeBlock(s.bytes_out.data(), reinterpret_cast<const unsigned char *>(s.text.data()), int(s.text.size()));
}

constexpr struct {
    const char *name;
    work run;
} works[] = {
    {"encode_vexa", encode_vexa},
    {"encode_openssl", encode_openssl},
    {"decode_vexa", decode_vexa},
    {"decode_openssl", decode_openssl},
};

} // namespace

int main(int argc, char **argv)
{
    std::vector<promise> promises;
    for (const size_t size : sizes) {
        const std::string of_size = "_" + std::to_string(size);
        for (const auto &work : works) {
            const auto measure = [size, run = work.run](benchmark::State &state) {
                sample s{size};
                for (auto _ : state) {
                    run(s);
                    benchmark::ClobberMemory();
                }
            };
            benchmark::RegisterBenchmark((work.name + of_size).c_str(), measure);
        }
        promises.push_back({"encode " + of_size.substr(1) + " bytes against OpenSSL",
                            "encode_vexa" + of_size,
                            {"encode_openssl" + of_size},
                            0.7});
        promises.push_back({"decode " + of_size.substr(1) + " bytes against OpenSSL",
                            "decode_vexa" + of_size,
                            {"decode_openssl" + of_size},
                            0.9});
    }
    run_and_judge(argc, argv, promises);
}
