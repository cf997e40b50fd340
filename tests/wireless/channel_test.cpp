// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

TEST(get_center_freq, lies_in_the_middle_of_the_occupied_channel)
{
    // by phy mode: "+" and "-" 40 MHz above and below, "p" the pair, "4" at 5 GHz, "8", "1" for 160, "d" for 80+80
    const std::string modes = ".........+-+-p4.+-481d..+-+-4p81d";
    const struct {
        char mode;
        int width, block, first_centre; // at 5 GHz: channels of a block from 36 on, and the centre of its first
    } wide[] = {{'4', 40, 8, 38}, {'8', 80, 16, 42}, {'d', 160, 16, 42}, {'1', 160, 32, 50}};
    const captured_log log;
    for (int mode = -128; mode <= 127; mode++) {
        const bool known = mode >= 0 && mode < int(modes.size());
        const char what = known ? modes[size_t(mode)] : '?';
        const auto *w = std::find_if(std::begin(wide), std::end(wide), [&](auto &row) { return row.mode == what; });
        const int width = w != std::end(wide) ? w->width : what == '.' ? 20 : known ? 40 : -1;
        EXPECT_EQ(get_bw(int8_t(mode)), width) << mode;
        for (const int start : {36, 100, 149}) // what is on the air: the blocks do not run on between these
            for (int channel = start; channel < start + (start == 149 ? 16 : 32); channel += 4) {
                const auto freq = uint32_t(5000 + 5 * channel);
                uint32_t centre = what == '.' ? freq : what == '+' ? freq + 10 : what == '-' ? freq - 10 : 2462;
                if (w != std::end(wide)) {
                    if (start == 149 && w->block == 32)
                        continue; // there is no such block
                    const int first = start + (channel - start) / w->block * w->block;
                    centre = uint32_t(5000 + 5 * (first + w->first_centre - 36));
                }
                EXPECT_EQ(get_center_freq(freq, uint16_t(channel), int8_t(mode)), known ? centre : UINT32_MAX)
                    << mode << " on " << channel;
            }
    }
    for (int channel = 1; channel <= 13; channel++)
        EXPECT_EQ(get_center_freq(0, uint16_t(channel), 13), channel <= 6 ? 2422u : 2462u);
    EXPECT_EQ(get_center_freq(0, 1, 19), 5055u) << "the remainder is negative";
    EXPECT_THAT(log.text(), testing::StartsWith("[info ] wireless.get_bw(): unknown phymode: 0xffffff80\n\n"));
}

TEST(frequencies, have_a_channel_and_a_band)
{
    const struct {
        uint32_t first, last, step, channel; // of the channel plans, with the number of the first
        int band;
        const char *name;
    } plans[] = {
        {2412, 2472, 5, 1, 1, "ng"},  {2484, 2484, 1, 14, 1, "ng"},          {4910, 4980, 5, 182, 2, "na"},
        {5160, 5875, 5, 32, 3, "na"}, {5880, 5920, 5, 176, 3, "unknown"},    {5935, 5935, 1, 2, 4, "unknown"},
        {5955, 7115, 5, 1, 4, "6e"},  {58320, 69120, 2160, 1, 5, "unknown"},
    };
    for (const auto &plan : plans)
        for (uint32_t freq = plan.first, channel = plan.channel; freq <= plan.last; freq += plan.step, channel++) {
            EXPECT_EQ(qx_freq_to_channel(freq), channel) << freq;
            if (plan.band == 1 || plan.band == 3 || *plan.name == '6') {
                EXPECT_EQ(ieee80211_mhz2ieee(freq), channel) << freq;
            }
            EXPECT_EQ(qx_freq_to_band(freq), plan.band) << freq;
            EXPECT_STREQ(get_band(int32_t(freq)), plan.name) << freq;
        }
    // where an answer changes, over all frequencies: the last one before, and the answer up to there
    const auto changes = [](auto answer) {
        std::string text;
        for (uint32_t freq = 0; freq < 80000; freq++)
            if (answer(freq) != answer(freq + 1))
                text += std::to_string(freq) + ":" + answer(freq) + " ";
        return text;
    };
    EXPECT_EQ(changes([](uint32_t f) { return std::to_string(qx_freq_to_band(f)); }),
              "2411:0 2484:1 4909:0 4980:2 5159:0 5925:3 5934:0 7115:4 58319:0 70200:5 ");
    EXPECT_EQ(changes([](uint32_t f) { return std::string{get_band(int32_t(f))}; }),
              "2411:unknown 2484:ng 4909:unknown 5875:na 5944:unknown 7125:6e ");
    // beside the plans both go on counting, in 32 bits without a sign
    constexpr uint32_t odd[][3] = {
        {2406, 858993459, 858993459},
        {2485, 858992956, 214748378},
        {4900, 858993439, 134},
        {4942, 188, 5},
        {4990, 858993457, 198},
        {5150, 30, 30},
        {5925, 858993454, 185},
        {5935, 2, 187},
        {7125, 235, 235},
        {60480, 2, 10906},
        {70201, 0, 12850},
    };
    for (const auto &[freq, channel, older] : odd) {
        EXPECT_EQ(qx_freq_to_channel(freq), channel) << freq;
        EXPECT_EQ(ieee80211_mhz2ieee(freq), older) << freq;
    }
    EXPECT_EQ(vexa_convert_to_dbm(96, 2), 6u);
    EXPECT_EQ(vexa_convert_to_dbm(0, 255), 925u);
}

TEST(get_wifi_cap, depends_on_board_and_uplink)
{
    ASSERT_EQ(board_identify()->system_id, 0xa620);
    the_device.put("/var/run/system.uplink", "eth\n");
    EXPECT_EQ(get_wifi_cap() & ~VEXA_WIFI_CAP_EVEN_CHAINS, 0x137fbecdu);
    the_device.put("/var/run/system.uplink", "wds\n");
    EXPECT_EQ(get_wifi_cap() & ~VEXA_WIFI_CAP_EVEN_CHAINS, 0x137fbecdu & ~0x10u);
}

TEST(platform, has_neither_limits_nor_nl80211)
{
    const captured_log log;
    int power = 7;
    EXPECT_EQ(qx_regulatory_get_target_power("20", "custom", 840, 3, 36, 20, 5, 3, &power), -1);
    EXPECT_EQ(power, 7);
    EXPECT_EQ(qx_nl80211_service_init(), -1);
    EXPECT_EQ(qx_nl80211_register_command_callback(1, nullptr, nullptr), -1);
    EXPECT_EQ(log.text(), "[error] regdomain.qx_regulatory_get_target_power_mbm(): regulatory configuration error\n"
                          "[error] nl80211.qx_nl80211_service_init(): qx_nl80211_service_init: not implemented on "
                          "current architecture\n"
                          "[error] nl80211.qx_nl80211_register_command_callback(): "
                          "qx_nl80211_register_command_callback: not implemented on current architecture\n");
}
