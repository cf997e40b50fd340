// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "factor.h"
#include "percent.h"

#include <algorithm>

namespace {

constexpr char log_tag[] = "satisfaction";

constexpr uint64_t enough_attempts = 30; // less tells nothing about the air

bool counts_retries(uint32_t radio_mode)
{
    return radio_mode == 17 || radio_mode == 18 || radio_mode == 23;
}

} // namespace

int calc_sta_retry_score(const stainfo &sta)
{
    if (!counts_retries(sta.tracking.radio_mode))
        return 100;
    const uint64_t attempts = sta.wifi_tx_attempts_mov, retries = sta.tx_retries_mov;
    if (retries > attempts) {
        log_warn("Client satisfaction computation error: TX data retries=%lu is bigger than total TX tries=%lu.",
                 static_cast<unsigned long>(retries), static_cast<unsigned long>(attempts));
        return 0;
    }
    if (attempts < enough_attempts)
        return 100;
    const int percent = int(percent_of(retries, attempts));
    return percent < 26 ? 100 : 100 - (std::min(percent, 105) - 25) * 51 / 100;
}
