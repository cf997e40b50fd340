// SPDX-License-Identifier: MIT
// A sealed envelope beside what it cannot do without, the IV and the cipher, and an opened one beside a fresh EVP
// context and zlib's checksum.

#include "bench/promises.h"

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <libvexa.h>
#include <openssl/evp.h>
#include <unistd.h>
#include <zlib.h>

namespace {

const struct vexa_protocol_ctrl site = {.initialized = 1,
                                        .encrypt = 1,
                                        .my_ip = {},
                                        .mcast_ip = {},
                                        .sock = -1,
                                        .device_id = {2, 0x56, 0x58, 0, 0, 1},
                                        .key = {0x2b, 0x7e, 0x15, 0x16},
                                        .rx_seq = 0,
                                        .tx_seq = 1};

constexpr int most = 4096;
const uint8_t plain[most] = {};

void seal(benchmark::State &state, int size)
{
    for (auto _ : state)
        free(gen_payload(plain, size, 9, 1, 1, &site));
}

// The work on a message of as many bytes, its padding included, without an envelope.
void iv_and_cipher(benchmark::State &state, int size)
{
    uint8_t iv[16], data[most + 16] = {};
    for (auto _ : state) {
        unsigned seed = 0;
        const int fd = open("/dev/urandom", O_RDONLY | O_CLOEXEC);
        if (read(fd, &seed, sizeof seed) != ssize_t{sizeof seed})
            state.SkipWithError("no random device");
        close(fd);
        srand(seed);
        for (uint8_t &byte : iv)
            byte = uint8_t(rand());
        aes_cbc_encrypt_128(site.key, iv, data, size_t(size) + 16);
        benchmark::ClobberMemory();
    }
}

struct sealed {
    explicit sealed(int size)
    {
        envelope *made = gen_payload(plain, size - 1, 9, 1, 1, &site); // with its padding `size`
        memcpy(bytes, made, sizeof(envelope) + size_t(size));
        free(made);
    }
    alignas(16) uint8_t bytes[sizeof(envelope) + most];
};

void unseal(benchmark::State &state, int size)
{
    const sealed from{size};
    alignas(16) uint8_t copy[sizeof from.bytes];
    for (auto _ : state) {
        memcpy(copy, from.bytes, sizeof(envelope) + size_t(size));
        if (dec_payload(int(sizeof(envelope)) + size, reinterpret_cast<envelope *>(copy), &site) != 0)
            state.SkipWithError("refused");
    }
}

void evp_and_zlib(benchmark::State &state, int size)
{
    const sealed from{size};
    alignas(16) uint8_t copy[sizeof from.bytes];
    for (auto _ : state) {
        memcpy(copy, from.bytes, sizeof(envelope) + size_t(size));
        int done = 0;
        uint8_t *payload = copy + sizeof(envelope);
        EVP_CIPHER_CTX *ctx = EVP_CIPHER_CTX_new();
        EVP_DecryptInit_ex(ctx, EVP_aes_128_cbc(), nullptr, site.key, copy + 12);
        EVP_CIPHER_CTX_set_padding(ctx, 0);
        EVP_DecryptUpdate(ctx, payload, &done, payload, size);
        EVP_DecryptFinal_ex(ctx, payload + done, &done);
        EVP_CIPHER_CTX_free(ctx);
        benchmark::DoNotOptimize(crc32(0, payload, uInt(size)));
    }
}

constexpr struct {
    const char *name;
    void (*run)(benchmark::State &, int);
} subjects[] = {{"seal", seal}, {"iv_and_cipher", iv_and_cipher}, {"open", unseal}, {"evp_and_zlib", evp_and_zlib}};

} // namespace

int main(int argc, char **argv)
{
    std::vector<promise> promises;
    for (const int size : {16, 64, 512, most})
        for (const auto &subject : subjects)
            benchmark::RegisterBenchmark((std::string{subject.name} + "_" + std::to_string(size)).c_str(), subject.run,
                                         size);
    for (const char *size : {"16", "64", "512", "4096"})
        promises.push_back({std::string{"sealing "} + size + " bytes against IV and cipher",
                            std::string{"seal_"} + size,
                            {std::string{"iv_and_cipher_"} + size},
                            1.15});
    promises.push_back({"opening 16 bytes against EVP and zlib", "open_16", {"evp_and_zlib_16"}, 1});
    run_and_judge(argc, argv, promises);
}
