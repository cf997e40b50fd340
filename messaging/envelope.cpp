// SPDX-License-Identifier: MIT
#include "messaging/envelope.h"

#include "core/log.h"
#include "core/owner.h"
#include "crypto/bytes.h"

#include <cstring>
#include <zlib.h>

static_assert(sizeof(envelope) == wire::payload && offsetof(envelope, length) == wire::length &&
              offsetof(envelope, iv) == wire::iv && offsetof(envelope, device_id) == wire::device_id &&
              offsetof(envelope, sequence) == wire::sequence && offsetof(envelope, crc) == wire::crc);

namespace {

constexpr char log_tag[] = "libvexa";

constexpr uint32_t magic_number = 0x22334455;
constexpr uint8_t current_version = 2;
constexpr uint8_t flag_plain = 0x01;
constexpr uint8_t flag_encrypted = 0x02;
constexpr int block_size = 16;

uint8_t padding_for(int len, int encrypt)
{
    return uint8_t(encrypt == 1 && len > 0 ? block_size - len % block_size : 0);
}

uint32_t crc_of(const uint8_t *payload, size_t length)
{
    return uint32_t(crc32(0, payload, uInt(length)));
}

void write_header(uint8_t *p, uint16_t length, uint16_t method, uint16_t type, int encrypt,
                  const struct vexa_protocol_ctrl &ctx)
{
    store_be32(p + wire::magic, magic_number);
    p[wire::version] = current_version;
    p[wire::flags] = encrypt ? flag_encrypted : flag_plain; // receivers go by the flag, also where nothing is encrypted
    wire::store16(p + wire::length, length);
    wire::store16(p + wire::method, method);
    wire::store16(p + wire::type, type);
    memcpy(p + wire::device_id, ctx.device_id, sizeof ctx.device_id);
    wire::store16(p + wire::sequence, uint16_t((ctx.tx_seq & 0xfff) << 4));
}

void host_order16(uint8_t *p, int shift = 0)
{
    const uint16_t value = uint16_t(wire::load16(p) >> shift);
    memcpy(p, &value, sizeof value);
}

void host_order32(uint8_t *p)
{
    const uint32_t value = load_be32(p);
    memcpy(p, &value, sizeof value);
}

void convert_header(uint8_t *p)
{
    host_order32(p + wire::magic);
    host_order16(p + wire::length);
    host_order16(p + wire::method);
    host_order16(p + wire::type);
    host_order16(p + wire::sequence, 4);
    host_order32(p + wire::crc);
}

// Nodes answer the same request more than once with these.
constexpr bool may_repeat(uint16_t method)
{
    return method == 3 || method == 5 || method == 6;
}

constexpr bool is_acceptable(const envelope &header)
{
    return header.magic == magic_number && header.flags & flag_encrypted && header.length != 0 &&
           header.version >= current_version;
}

// Bytes without the padding, -1 when that is damaged. The last byte counts the padding: 0 is none, and more than a
// block is taken, too.
int unpadded_length(const uint8_t *payload, int length)
{
    const uint8_t pad = payload[length - 1];
    if (pad > length)
        return -1;
    for (int i = length - pad; i < length; i++)
        if (payload[i] != pad)
            return -1;
    return length - pad;
}

} // namespace

extern "C" envelope *gen_payload(const void *data, int len, uint16_t method, uint16_t type, int encrypt,
                                 const struct vexa_protocol_ctrl *ctx)
{
    const uint8_t pad = padding_for(len, encrypt);
    if (len < 0 || len > UINT16_MAX - pad)
        return nullptr;
    const size_t length = size_t(len) + pad;
    unique_malloc<uint8_t> packet{static_cast<uint8_t *>(calloc(1, wire::payload + length))};
    uint8_t *p = packet.get();
    if (!p) {
        log_err("hdr malloc fail");
        return nullptr;
    }
    write_header(p, uint16_t(length), method, type, encrypt, *ctx);
    uint8_t *payload = p + wire::payload;
    if (len > 0)
        memcpy(payload, data, size_t(len));
    if (encrypt == 1) {
        memset(payload + len, pad, pad);
        store_be32(p + wire::crc, crc_of(payload, length));
        (void)aes_cbc_generate_iv(p + wire::iv, sizeof envelope::iv);
        (void)aes_cbc_encrypt_128(ctx->key, p + wire::iv, payload, length);
    }
    return reinterpret_cast<envelope *>(packet.release());
}

extern "C" int dec_payload(int len, envelope *pkt, const struct vexa_protocol_ctrl *ctx)
{
    auto *p = reinterpret_cast<uint8_t *>(pkt);
    if (len < int{wire::payload} || len - int{wire::payload} != wire::load16(p + wire::length)) {
        log_debug("packet length check fail");
        return 1;
    }
    convert_header(p);
    envelope header;
    memcpy(&header, p, sizeof header);
    if (header.sequence == ctx->rx_seq && !may_repeat(header.method))
        return 2;
    if (!is_acceptable(header))
        return 1;
    uint8_t *payload = p + wire::payload;
    (void)aes_cbc_decrypt_128(ctx->key, header.iv, payload, header.length);
    const uint32_t crc = crc_of(payload, header.length);
    if (crc != header.crc) {
        log_debug("hdr=%d, crc32=%d", int(header.crc), int(crc));
        return 1;
    }
    const int length = unpadded_length(payload, header.length);
    if (length < 0)
        return 1;
    header.length = uint16_t(length);
    memcpy(p + wire::length, &header.length, sizeof header.length);
    return 0;
}
