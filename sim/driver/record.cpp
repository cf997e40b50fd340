// SPDX-License-Identifier: MIT
#include "sim/driver/record.h"

#include "sim/error.h"

#include <algorithm>
#include <cstring>

namespace sim::driver {

namespace {

constexpr size_t to_length = 64; // from a measured text

double load_of(const keys &values)
{
    const auto load = values.find("load");
    return load == values.end() ? 1 : strtod(load->second.c_str(), nullptr);
}

std::string number_in(const uint8_t *bytes, size_t width, bool is_signed)
{
    const uint64_t value = take(bytes, width);
    const uint64_t sign = uint64_t{1} << (8 * width - 1);
    return is_signed && (value & sign) ? std::to_string(int64_t(value) - int64_t(2 * sign)) : std::to_string(value);
}

std::string value_of(const field &f, const uint8_t *record)
{
    const uint8_t *at = record + f.at;
    const auto *text = reinterpret_cast<const char *>(at);
    switch (f.as) {
    case form::address:
        return text_of_ipv4(uint32_t(take(at, f.width)));
    case form::hardware: {
        mac address{};
        std::copy_n(at, address.size(), address.begin());
        return text_of(address);
    }
    case form::measured:
        return {text, std::min<size_t>(at[to_length], f.width)};
    case form::text:
        return {text, strnlen(text, f.width)};
    default:
        return number_in(at, f.width, std::string_view{f.key} == "noise");
    }
}

moving_value signal_of(std::string_view text, const keys &values)
{
    moving_value v = moving_value::of(text);
    const auto noise = values.find("noise");
    if (int64_t(v.base) < 0 && noise != values.end())
        v.base -= moving_value::of(noise->second).base;
    return v;
}

} // namespace

bool layout::has(std::string_view key) const
{
    return std::any_of(fields.begin(), fields.end(), [key](const field &f) { return f.key == key; });
}

keys layout::read(const uint8_t *record) const
{
    keys values;
    for (const field &f : fields)
        if (std::any_of(record + f.at, record + f.at + f.width, [](uint8_t byte) { return byte != 0; }))
            values.emplace(f.key, value_of(f, record));
    return values;
}

record::record(const layout &l, const keys &values, double phase) : image_(l.size), phase_{phase}
{
    for (const field &f : l.fields)
        if (const auto given = values.find(f.key); given != values.end())
            set(f, given->second, values);
}

void record::set(const field &f, std::string_view value, const keys &values)
{
    switch (f.as) {
    case form::number:
        return set_number(f, moving_value::of(value));
    case form::counter:
        return set_number(f, moving_value::of(value).times(load_of(values)));
    case form::signal:
        return set_number(f, signal_of(value, values));
    case form::address:
        return put(&image_[f.at], f.width, ipv4_of(value));
    case form::hardware:
        std::ranges::copy(mac_of(value), &image_[f.at]);
        return;
    case form::measured:
        image_[f.at + to_length] = uint8_t(value.size());
        [[fallthrough]];
    case form::text:
        return set_text(f, value);
    }
}

void record::set_number(const field &f, const moving_value &v)
{
    put(&image_[f.at], f.width, v.base);
    if (v.moves())
        moving_.push_back({f, v});
}

void record::set_text(const field &f, std::string_view value)
{
    if (value.size() > f.width)
        throw error(std::string(f.key) + " has room for " + std::to_string(f.width) + " bytes");
    std::copy(value.begin(), value.end(), &image_[f.at]);
}

void record::write(uint8_t *out, double seconds) const
{
    std::copy(image_.begin(), image_.end(), out);
    for (const moving_field &m : moving_)
        put(out + m.where.at, m.where.width, m.value.at(seconds, phase_));
}

} // namespace sim::driver
