// SPDX-License-Identifier: MIT
#include "core/log.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr char log_tag[] = "regdomain";

uint32_t wanted_power(const char *custom, std::string_view mode, uint32_t low_mbm, uint32_t most_mbm)
{
    if (mode == "low")
        return low_mbm;
    if (mode == "medium")
        return (most_mbm + low_mbm) >> 1;
    int dbm;
    // NOLINTNEXTLINE(cert-err34-c): what "%d" takes is what the configuration may say
    if (mode == "custom" && sscanf(custom, "%d", &dbm) == 1)
        return uint32_t(dbm) * 100;
    return most_mbm;
}

} // namespace

// There is no regulatory database on this platform: the driver keeps the limits itself.
extern "C" int qx_regulatory_get_max_eirp(int, int, int, int, int *, int *)
{
    return -1;
}

extern "C" int qx_regulatory_get_target_power_mbm(const char *custom, const char *mode, int country, int band,
                                                  int channel, int width, int low_mbm, int gain_mbm, int *mbm)
{
    int eirp, conducted;
    if (qx_regulatory_get_max_eirp(country, band, channel, width, &eirp, &conducted) != 0) {
        log_err("regulatory configuration error");
        return -1;
    }
    const uint32_t most = std::min(uint32_t(conducted) * 100, uint32_t(eirp) * 100 - uint32_t(gain_mbm));
    *mbm = int(std::min(wanted_power(custom, mode, uint32_t(low_mbm), most), most));
    return 0;
}

extern "C" int qx_regulatory_get_target_power(const char *custom, const char *mode, int country, int band, int channel,
                                              int width, int low_dbm, int gain_dbm, int *dbm)
{
    int mbm;
    if (qx_regulatory_get_target_power_mbm(custom, mode, country, band, channel, width, low_dbm * 100, gain_dbm * 100,
                                           &mbm) != 0)
        return -1;
    *dbm = mbm / 100;
    return 0;
}
