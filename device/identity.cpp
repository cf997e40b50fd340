// SPDX-License-Identifier: MIT
#include "device/identity.h"

#include "core/owner.h"
#include "core/paths.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace {

// What the factory wrote at the start of its data, by offset and size; docs/eeprom.md tells people.
struct field {
    size_t at, size;
};
constexpr field base_mac = {0x00, 6};
constexpr field hw_revision = {0x10, 4}; // big-endian
constexpr field qrcode = {0x20, 64};

// Empty when the factory data cannot be read or the field was never written.
std::span<const uint8_t> read_field(const unique_buffer &factory_data, field which)
{
    if (!factory_data)
        return {};
    const std::span bytes{static_cast<const uint8_t *>(factory_data->head(factory_data.get())) + which.at, which.size};
    for (const int blank : {0x00, 0xff})
        if (std::ranges::all_of(bytes, [blank](uint8_t byte) { return byte == blank; }))
            return {};
    return bytes;
}

} // namespace

void complete_board(board &b)
{
    const unique_buffer factory_data{vexa_read_eeprom()};
    const auto mac = read_field(factory_data, base_mac);
    const auto revision = read_field(factory_data, hw_revision);
    if (!revision.empty())
        b.hw_rev = int32_t(uint32_t{revision[0]} << 24 | uint32_t{revision[1]} << 16 | uint32_t{revision[2]} << 8 |
                           revision[3]);
    if (!mac.empty()) {
        memcpy(b.cpu_mac, mac.data(), sizeof b.cpu_mac);
        return;
    }
    char text[18];
    (void)strtomac(freadvalue(path_system_info, "eth0.macaddr", text, sizeof text, ""), b.cpu_mac);
}

extern "C" int corvo_board_has_qrcode(void)
{
    return !read_field(unique_buffer{vexa_read_eeprom()}, qrcode).empty();
}
