// SPDX-License-Identifier: MIT
#include <libvexa.h>

// The library itself does not read these: they go with it to the tools that upgrade.

namespace {

// Each list goes on from the one before.
constexpr uint32_t oui_1_0_0[] = {VEXA_OUI, 0};
constexpr uint32_t oui_1_2_1[] = {VEXA_OUI, 0x000a5658, 0};
constexpr uint32_t oui_2_2_3[] = {VEXA_OUI, 0x000a5658, 0x00125658, 0};

} // namespace

extern "C" {

const fw_boardrev g_fw_boardrev_table_a[3] = {
    {0x0003092a, -1, 29},
    {0x00030900, 30, 255},
    {VEXA_LAST_FIRMWARE, 256, INT32_MAX},
};

const fw_boardrev g_fw_boardrev_table_b[3] = {
    {0x00020300, -1, 23},
    {0x00020404, 24, 255},
    {VEXA_LAST_FIRMWARE, 256, INT32_MAX},
};

const fw_boardrev g_fw_boardrev_table_c[3] = {
    {0x0003092a, -1, 12},
    {0x00030900, 13, 255},
    {VEXA_LAST_FIRMWARE, 256, INT32_MAX},
};

const fw_part g_fw_flashvd_table_a[3] = {
    {0x00000001, 0xff010100},
    {0x00040310, 0xff020106},
    {VEXA_LAST_FIRMWARE, UINT32_MAX},
};

const fw_part g_fw_bomrev_table_a[3] = {
    {0x00052a00, 0x2e8},
    {0x00052b25, 0x436},
    {VEXA_LAST_FIRMWARE, UINT32_MAX},
};

const fw_part g_fw_flashjedec_table_a[3] = {
    {0x00052a00, 0x00ef4020},
    {0x00052b24, 0x00c2201a},
    {VEXA_LAST_FIRMWARE, UINT32_MAX},
};

const fw_oui g_fw_oui_table[4] = {
    {0x00010000, oui_1_0_0},
    {0x00010201, oui_1_2_1},
    {0x00020203, oui_2_2_3},
    {VEXA_LAST_FIRMWARE, nullptr},
};

} // extern "C"
