// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

TEST(get_center_freq, lies_in_the_middle_of_the_occupied_channel)
{
    constexpr uint32_t none = UINT32_MAX;
    const struct {
        uint32_t freq;
        uint16_t channel;
        int8_t mode;
        uint32_t centre;
        int width;
    } rows[] = {
        {5180, 36, 0, 5180, 20},    {5180, 36, 9, 5190, 40},   {5200, 40, 27, 5190, 40}, {2412, 6, 13, 2422, 40},
        {2412, 7, 29, 2462, 40},    {5180, 36, 14, 5190, 40},  {5180, 36, 19, 5210, 80}, {5745, 149, 30, 5775, 80},
        {5745, 149, 21, 5775, 160}, {5180, 36, 20, 5250, 160}, {0, 1, 19, 5055, 80},     {5180, 36, 33, none, -1},
        {5180, 36, -1, none, -1},
    };
    const captured_log log;
    for (const auto &row : rows) {
        EXPECT_EQ(get_center_freq(row.freq, row.channel, row.mode), row.centre) << int(row.mode);
        EXPECT_EQ(get_bw(row.mode), row.width) << int(row.mode);
    }
    EXPECT_EQ(log.text(), "[info ] wireless.get_bw(): unknown phymode: 0x21\n\n"
                          "[info ] wireless.get_bw(): unknown phymode: 0xffffffff\n\n");
    int wide = 0;
    for (int mode = 0; mode <= 32; mode++)
        wide += get_bw(int8_t(mode)) > 20;
    EXPECT_EQ(wide, 21);
}

TEST(frequencies, have_a_channel_and_a_band)
{
    const struct {
        uint32_t freq, channel, older;
        int band;
        const char *name;
    } rows[] = {
        {2412, 1U, 1U, 1, "ng"},
        {2484, 14U, 14U, 1, "ng"},
        {2485, 858992956U, 214748378U, 0, "unknown"},
        {4900, 858993439U, 134U, 0, "unknown"},
        {4910, 182U, 182U, 2, "na"},
        {4942, 188U, 5U, 2, "na"},
        {5150, 30U, 30U, 0, "na"},
        {5180, 36U, 36U, 3, "na"},
        {5925, 858993454U, 185U, 3, "unknown"},
        {5935, 2U, 187U, 4, "unknown"},
        {5955, 1U, 1U, 4, "6e"},
        {7125, 235U, 235U, 0, "6e"},
        {60480, 2U, 10906U, 5, "unknown"},
        {70201, 0U, 12850U, 0, "unknown"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.freq);
        EXPECT_EQ(qx_freq_to_channel(row.freq), row.channel);
        EXPECT_EQ(ieee80211_mhz2ieee(row.freq), row.older);
        EXPECT_EQ(qx_freq_to_band(row.freq), row.band);
        EXPECT_STREQ(get_band(int32_t(row.freq)), row.name);
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
