// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"
#include "tests/support/device.h"

inline std::string text_of(const json_t *value)
{
    const unique_text text{value ? json_dumps(value, JSON_COMPACT | JSON_ENCODE_ANY) : nullptr};
    return text ? text.get() : "(none)";
}
