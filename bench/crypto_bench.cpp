// SPDX-License-Identifier: MIT
// The ciphers and the hash beside those of OpenSSL, nettle and mbedtls: one message with its key set-up. The program
// runs twice: as the processor comes, and with its AES and SHA instructions hidden from the peers that can be told so
// (mbedtls cannot, and the processor of the developer's machine has them).

#include "bench/crypto_peers.h"
#include "bench/promises.h"

#include <cstdlib>
#include <libvexa.h>
#include <unistd.h>

namespace {

void vexa_encrypt(message &m, size_t size)
{
    aes_cbc_encrypt_128(m.key, m.iv, m.data, size);
}
void vexa_decrypt(message &m, size_t size)
{
    aes_cbc_decrypt_128(m.key, m.iv, m.data, size);
}
void vexa_hash(message &m, size_t size)
{
    sha256(m.data, uint32_t(size), m.digest);
}

constexpr crypto_peer vexa = {"vexa", vexa_encrypt, vexa_decrypt, vexa_hash};
constexpr const crypto_peer *subjects[] = {&vexa, &openssl_evp, &openssl_low, &nettle_peer, &mbedtls_peer};
constexpr size_t sizes[] = {16, 64, 512, 4096};

void measure(const std::string &name, work run, size_t size)
{
    benchmark::RegisterBenchmark(name.c_str(), [run, size](benchmark::State &state) {
        message m;
        for (auto _ : state) {
            run(m, size);
            benchmark::ClobberMemory();
        }
    });
}

// `operation` of the library at one size, held against some of the others.
promise at_most(double factor, const std::string &operation, size_t size, std::initializer_list<const char *> peers)
{
    const std::string of_size = "_" + std::to_string(size);
    promise p = {operation + " " + std::to_string(size) + " bytes against", operation + "_vexa" + of_size, {}, factor};
    for (const char *peer : peers) {
        p.what += std::string{" "} + peer;
        p.peers.push_back(operation + "_" + peer + of_size);
    }
    return p;
}

// The peers that use the instructions of the processor.
std::vector<promise> promises_as_it_comes()
{
    std::vector<promise> promises;
    for (const char *operation : {"encrypt", "decrypt"})
        for (const size_t size : {16, 64})
            promises.push_back(at_most(1, operation, size, {"openssl_evp"}));
    return promises;
}

// The peers that use tables, like the library, or a vector unit without such instructions.
std::vector<promise> promises_masked()
{
    std::vector<promise> promises;
    for (const char *operation : {"encrypt", "decrypt"}) {
        promises.push_back(at_most(0.7, operation, 16, {"openssl_low"}));
        promises.push_back(at_most(1.05, operation, 512, {"openssl_low", "nettle"}));
    }
    for (const size_t size : sizes)
        promises.push_back(at_most(1.35, "sha256", size, {"openssl_low"}));
    return promises;
}

} // namespace

int main(int argc, char **argv)
{
    constexpr char openssl_mask[] = "OPENSSL_ia32cap";
    const bool masked = getenv(openssl_mask);
    for (const crypto_peer *subject : subjects)
        for (const size_t size : sizes) {
            const std::string suffix = std::string{"_"} + subject->name + "_" + std::to_string(size);
            measure("encrypt" + suffix, subject->encrypt, size);
            measure("decrypt" + suffix, subject->decrypt, size);
            measure("sha256" + suffix, subject->hash, size);
        }
    puts(masked ? "\nwith the processor's AES and SHA instructions hidden" : "\nas the processor comes");
    run_and_judge(argc, argv, masked ? promises_masked() : promises_as_it_comes());
    if (masked)
        return 0;
    fflush(stdout);
    setenv(openssl_mask, "~0x200000200000000:~0x20000000", 1); // without AES, carry-less product and SHA
    setenv("NETTLE_FAT_OVERRIDE", "vendor:amd", 1);            // what any processor has
    execv("/proc/self/exe", argv);
    return 1;
}
