// SPDX-License-Identifier: MIT
#pragma once

#include "configuration.h"
#include "output.h"

// The limits as the library has them in force: a row for each VAP on the way down, and one for each of its uplinks.
// What has no limit is null.
json_ref limit_documents(cfg_entry *cfg);
inline constexpr column limit_columns[] = {
    {"vap", "VAP"},
    {"id", "Id", kind::number},
    {"usage", "Usage"},
    {"speed_mbit", "Mbit/s", kind::number},
    {"direction", "Direction"},
    {"through", "Through"},
    {"least_kbit", "At least", kind::number},
    {"most_kbit", "At most", kind::number},
};
