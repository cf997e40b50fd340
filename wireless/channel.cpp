// SPDX-License-Identifier: MIT
#include "core/log.h"

#include <array>

namespace {

constexpr char log_tag[] = "wireless";

enum class width : uint8_t { w20, w40_above, w40_below, w40_pair, w40, w80, w160, w80_80 };

// By phy mode: 0 to 32.
constexpr std::array<width, 33> widths = [] {
    std::array<width, 33> table{}; // 20 MHz unless said otherwise
    constexpr struct {
        width w;
        int8_t modes[5];
    } rows[] = {
        {width::w40_above, {9, 11, 16, 24, 26}},
        {width::w40_below, {10, 12, 17, 25, 27}},
        {width::w40_pair, {13, 29}},
        {width::w40, {14, 18, 28}},
        {width::w80, {19, 30}},
        {width::w160, {20, 31}},
        {width::w80_80, {21, 32}},
    };
    for (const auto &row : rows)
        for (const int8_t mode : row.modes)
            if (mode != 0)
                table[size_t(mode)] = row.w;
    return table;
}();

constexpr bool known(int8_t phy_mode)
{
    return phy_mode >= 0 && size_t(phy_mode) < widths.size();
}

// Centre of the block that a 5 GHz channel lies in; the remainder's sign follows the dividend.
constexpr uint32_t block_centre(int channel, int block, int offset)
{
    return uint32_t(5000 + 5 * (channel - (channel - 4) % block + offset + (channel & 1)));
}
static_assert(block_centre(36, 16, 6) == 5210 && block_centre(1, 16, 6) == 5055);

// Edges are inclusive.
struct range {
    uint32_t first, last;
};
constexpr struct {
    range mhz;
    int band;
} bands[] = {{{2412, 2484}, 1}, {{4910, 4980}, 2}, {{5160, 5925}, 3}, {{5935, 7115}, 4}, {{58320, 70200}, 5}};

constexpr bool lies_in(uint32_t mhz, range r)
{
    return mhz >= r.first && mhz <= r.last;
}

} // namespace

extern "C" uint32_t get_center_freq(uint32_t freq, uint16_t channel, int8_t phy_mode)
{
    if (!known(phy_mode))
        return UINT32_MAX;
    switch (widths[size_t(phy_mode)]) {
    case width::w40_above:
        return freq + 10;
    case width::w40_below:
        return freq - 10;
    case width::w40_pair: // channels 1 to 6 share the pair around channel 3, all others that around channel 11
        return channel < 7 ? 2422 : 2462;
    case width::w40:
        return block_centre(channel, 8, 2);
    case width::w80:
    case width::w80_80: // the first segment
        return block_centre(channel, 16, 6);
    case width::w160:
        return block_centre(channel, 32, 14);
    default:
        return freq;
    }
}

// Daemons count 80+80 as 160 MHz, though its centre is that of an 80 MHz segment.
extern "C" int get_bw(int8_t phy_mode)
{
    if (!known(phy_mode)) {
        log_info("unknown phymode: 0x%x\n", unsigned(phy_mode));
        return -1;
    }
    switch (widths[size_t(phy_mode)]) {
    case width::w20:
        return 20;
    case width::w80:
        return 80;
    case width::w160:
    case width::w80_80:
        return 160;
    default:
        return 40;
    }
}

extern "C" uint32_t qx_freq_to_channel(uint32_t freq)
{
    if (freq == 2484)
        return 14;
    if (freq < 2484)
        return (freq - 2407) / 5;
    if (lies_in(freq, {4910, 4980}))
        return (freq - 4000) / 5;
    if (freq < 5925)
        return (freq - 5000) / 5;
    if (freq == 5935)
        return 2;
    if (freq <= 45000)
        return (freq - 5950) / 5;
    return lies_in(freq, {58320, 70200}) ? (freq - 56160) / 2160 : 0;
}

// The older rules, which code next to the driver relies on.
extern "C" uint32_t ieee80211_mhz2ieee(uint32_t freq)
{
    if (freq == 2484)
        return 14;
    if (freq < 2484)
        return (freq - 2407) / 5;
    if (lies_in(freq, {4941, 4989}))
        return (freq * 10 - 49400 + (freq % 5 == 2 ? 5 : 0)) / 5;
    if (freq <= 4900)
        return (freq - 2512) / 20 + 15;
    if (freq < 5000)
        return (freq - 4000) / 5;
    return freq <= 5950 ? (freq - 5000) / 5 : (freq - 5950) / 5;
}

extern "C" int qx_freq_to_band(uint32_t freq)
{
    for (const auto &row : bands)
        if (lies_in(freq, row.mhz))
            return row.band;
    return 0;
}

// The edges are those of the names in the configuration, which differ from the codes of qx_freq_to_band().
extern "C" const char *get_band(int32_t freq)
{
    if (freq >= 4910 && freq <= 5875)
        return "na";
    if (freq >= 5945 && freq <= 7125)
        return "6e";
    return freq < 2412 || freq > 2484 ? "unknown" : "ng";
}

extern "C" uint32_t vexa_convert_to_dbm(uint8_t level, uint8_t steps)
{
    return ((uint32_t{level} - 96) & 255) + 3 * uint32_t{steps};
}
