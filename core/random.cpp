// SPDX-License-Identifier: MIT
#include "core/hex.h"
#include "core/log.h"
#include "core/owner.h"
#include "core/paths.h"

#include <ctime>
#include <fcntl.h>

namespace {

constexpr char log_tag[] = "libvexa_util";
constexpr char letters_and_digits[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

// Seeds rand(), before each use; without a random device from the clock.
void urandom()
{
    const keep_errno kept;
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    unsigned seed = unsigned(now.tv_nsec);
    const unique_fd fd{open(path_urandom, O_RDONLY | O_CLOEXEC)};
    if (read(fd.get(), &seed, sizeof seed) != ssize_t{sizeof seed})
        log_verbose("read returned error in urandom");
    srand(seed);
}

unsigned char random_byte()
{
    return static_cast<unsigned char>(rand()); // NOLINT(clang-analyzer-security.insecureAPI.rand): not for keys
}

} // namespace

extern "C" int gen_rand_bytes(unsigned char *buf, size_t len)
{
    if (!buf || len == 0)
        return 0;
    urandom();
    for (size_t i = 0; i < len; i++)
        buf[i] = random_byte();
    return int(len);
}

extern "C" int gen_rand_hex(char *buf, size_t size)
{
    if (!buf || size % 2 == 0)
        return 0;
    urandom();
    const size_t bytes = size / 2;
    for (size_t i = 0; i < bytes; i++)
        put_hex(buf + 2 * i, random_byte(), upper_hex_digits);
    buf[2 * bytes] = '\0';
    return int(bytes);
}

extern "C" char *gen_rand_string(char *buf, size_t len)
{
    if (!buf || len == 0)
        return nullptr;
    urandom();
    for (size_t i = 0; i < len; i++)
        buf[i] = letters_and_digits[rand() % 62]; // NOLINT(clang-analyzer-security.insecureAPI.rand): not for keys
    buf[len] = '\0';
    return buf;
}
