// SPDX-License-Identifier: MIT
#include "crypto/secret.h"

#include <cerrno>
#include <cstring>
#include <libvexa.h>

namespace {

constexpr unsigned id_bytes = 16; // bin2hex() leaves the last one out: 30 digits, like every identifier issued so far
constexpr unsigned id_size = 33;

} // namespace

extern "C" int generate_anonClientId(char *out, const uint8_t mac[6], const char *str)
{
    if (*str == '\0')
        return -EINVAL;
    secret<sha256_ctx> ctx;
    uint8_t digest[32];
    sha256_init(ctx.get());
    sha256_update(ctx.get(), mac, 6);
    sha256_update(ctx.get(), reinterpret_cast<const uint8_t *>(str), uint32_t(strlen(str)));
    sha256_final(ctx.get(), digest);
    (void)bin2hex(digest, id_bytes, out, id_size);
    return 0;
}
