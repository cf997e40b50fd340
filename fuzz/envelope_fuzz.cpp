// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "fuzz/check.h"

#include <cstring>

namespace {

const struct vexa_protocol_ctrl site = {.initialized = 1,
                                        .encrypt = 1,
                                        .my_ip = {},
                                        .mcast_ip = {},
                                        .sock = -1,
                                        .device_id = {2},
                                        .key = {1},
                                        .rx_seq = 0,
                                        .tx_seq = 1};

// A datagram as it came.
void take(const uint8_t *data, size_t size)
{
    const unique_malloc<uint8_t> copy{static_cast<uint8_t *>(malloc(size + 1))};
    memcpy(copy.get() + 1, data, size);
    auto *packet = reinterpret_cast<envelope *>(copy.get() + 1); // at an odd address
    if (dec_payload(int(size), packet, &site) != 0)
        return;
    uint16_t length;
    memcpy(&length, copy.get() + 1 + offsetof(envelope, length), sizeof length);
    check(sizeof(envelope) + length <= size);
}

// A payload there and back.
void seal_and_open(const uint8_t *data, size_t size)
{
    const unique_malloc<envelope> packet{gen_payload(data, int(size), 3, 1, 1, &site)};
    if (size == 0 || size > UINT16_MAX - 16)
        return;
    const auto *wire = reinterpret_cast<const uint8_t *>(packet.get());
    check(dec_payload(int(sizeof(envelope)) + (wire[6] << 8 | wire[7]), packet.get(), &site) == 0);
    check(packet->length == size && memcmp(packet.get() + 1, data, size) == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    libvexa_log_level = 0;
    take(data, size);
    seal_and_open(data, size);
    return 0;
}
