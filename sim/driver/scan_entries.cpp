// SPDX-License-Identifier: MIT
#include "sim/driver/scan_entries.h"

#include "sim/driver/moving_value.h"
#include "sim/error.h"

#include <algorithm>

namespace sim::driver {

namespace {

constexpr uint8_t ssid_element = 0, rates_element = 1, channel_element = 3, security_element = 48, vendor_element = 221;
constexpr uint8_t rates[] = {0x8c, 0x12, 0x98, 0x24, 0xb0, 0x48, 0x60, 0x6c}; // 500 kbit/s each; basic ones + 128
constexpr uint8_t personal_ccmp[] = {1, 0, 0, 0x0f, 0xac, 4, 1, 0, 0, 0x0f, 0xac, 4, 1, 0, 0, 0x0f, 0xac, 2, 0, 0};
constexpr uint64_t privacy = 0x10;

constexpr uint8_t maker[] = {0x02, 0x56, 0x58};

constexpr struct {
    const char *key;
    uint8_t number;
} parts[] = {
    {"vexa_mac", 0x81}, {"vexa_name", 0x84}, {"vexa_data", 0x85}, {"vexa_blob1", 0x88}, {"vexa_blob2", 0x89},
};

std::string_view value_of(const keys &values, std::string_view key)
{
    const auto found = values.find(key);
    return found == values.end() ? std::string_view{} : found->second;
}

uint64_t number_of(const keys &values, std::string_view key)
{
    const std::string_view text = value_of(values, key);
    return text.empty() ? 0 : moving_value::of(text).base;
}

template <typename Bytes>
void append(bytes &out, const Bytes &more)
{
    out.insert(out.end(), std::begin(more), std::end(more));
}

template <typename Bytes>
void append_element(bytes &out, uint8_t number, const Bytes &content)
{
    if (std::size(content) > UINT8_MAX)
        throw error("an element holds 255 bytes");
    out.push_back(number);
    out.push_back(uint8_t(std::size(content)));
    append(out, content);
}

bytes part_of(std::string_view key, std::string_view value)
{
    return key == "vexa_name" ? bytes(value.begin(), value.end()) : bytes_of_hex(value);
}

// What the maker's access points say of themselves.
bytes vendor_content(const keys &values)
{
    bytes out(std::begin(maker), std::end(maker));
    append(out, bytes{0, 1, 1});
    out.push_back(uint8_t(number_of(values, "vexa_flags")));
    append(out, bytes{0, 0});
    const uint64_t value = number_of(values, "vexa_value");
    append(out, bytes{uint8_t(value), uint8_t(value >> 8)});
    for (const auto &part : parts)
        if (const auto found = values.find(part.key); found != values.end())
            append_element(out, part.number, part_of(part.key, found->second));
    return out;
}

bool says_vexa(const keys &values)
{
    return std::any_of(values.begin(), values.end(), [](const auto &v) { return v.first.starts_with("vexa_"); });
}

} // namespace

bool is_element_key(std::string_view key)
{
    return key == "ies" || key == "vexa_flags" || key == "vexa_value" ||
           std::any_of(std::begin(parts), std::end(parts), [key](const auto &part) { return part.key == key; });
}

bytes elements_of(const keys &values)
{
    bytes out;
    append_element(out, rates_element, rates);
    append_element(out, channel_element, bytes{uint8_t(number_of(values, "channel"))});
    if (number_of(values, "capability") & privacy)
        append_element(out, security_element, personal_ccmp);
    if (says_vexa(values))
        append_element(out, vendor_element, vendor_content(values));
    append(out, bytes_of_hex(value_of(values, "ies")));
    return out;
}

bytes probe_frame_of(const mac &station, const keys &values)
{
    if (values.contains("probe"))
        return bytes_of_hex(value_of(values, "probe"));
    bytes out{0x40, 0, 0, 0}; // a probe request to everyone
    append(out, bytes(6, 0xff));
    append(out, station);
    append(out, bytes(6, 0xff));
    append(out, bytes{0, 0});
    append_element(out, ssid_element, value_of(values, "ssid"));
    append_element(out, rates_element, rates);
    return out;
}

} // namespace sim::driver
