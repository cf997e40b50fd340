// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"

#include <array>
#include <libvexa.h>
#include <map>
#include <string>

// The scores of one cycle.
struct satisfaction_cycle {
    json_ref clients;   // a row for each, worst first
    json_ref radios;    // their scores, clients and neighbours
    int32_t score;      // of the access point; -1 without clients
    std::string silent; // names of the interfaces whose clients are not known
};

// Asks the driver about all clients, cycle by cycle. The scores are moving ones: what each client had in the last four
// cycles is kept by its address, for as long as it stays.
class satisfaction {
public:
    satisfaction_cycle next();

private:
    using address = std::array<uint8_t, 6>;
    struct samples {
        vexa_score standard, experimental;
    };
    void recall(stainfo &sta, std::map<address, samples> &seen) const;

    std::map<address, samples> last_;
};

inline constexpr column radio_columns[] = {
    {"name", "Radio"},
    {"channel", "Channel", kind::number},
    {"frequency_mhz", "MHz", kind::number},
    {"clients", "Clients", kind::number},
    {"score", "Satisfaction", kind::bar},
    {"neighbours", "Networks heard", kind::number},
};
inline constexpr column client_columns[] = {
    {"name", "Client", kind::text, true},         {"vap", "VAP"},
    {"score", "Satisfaction", kind::bar},         {"worst", "Worst factor"},
    {"anomalies", "Anomalies", kind::text, true},
};
