// SPDX-License-Identifier: MIT
#pragma once

#include "sim/driver/bytes.h"
#include "sim/driver/lines.h"
#include "sim/driver/moving_value.h"

#include <span>

namespace sim::driver {

enum class form : uint8_t {
    number,
    counter, // a number that grows with the load of the station
    signal,  // in dBm, stored as the distance from "noise"; a positive one as it is
    address, // IPv4
    hardware,
    text,     // filled up with zero bytes
    measured, // text whose length stands 64 bytes further on
};

struct field {
    const char *key;
    uint16_t at;
    uint8_t width;
    form as = form::number;
};

// One kind of record that the driver answers with: where each value of a description goes.
struct layout {
    size_t size;
    std::span<const field> fields;

    bool has(std::string_view key) const;
    keys read(const uint8_t *record) const; // what a description says to get it, without values that are 0
};

// One record: its bytes, and those values in it that move.
class record {
public:
    record(const layout &, const keys &values, double phase);

    size_t size() const { return image_.size(); }
    void write(uint8_t *out, double seconds) const;

private:
    struct moving_field {
        field where;
        moving_value value;
    };

    void set(const field &, std::string_view value, const keys &values);
    void set_number(const field &, const moving_value &);
    void set_text(const field &, std::string_view value);

    bytes image_;
    std::vector<moving_field> moving_;
    double phase_;
};

} // namespace sim::driver
