// SPDX-License-Identifier: MIT
#include "core/paths.h"

#include <algorithm>
#include <cstring>
#include <libvexa.h>
#include <unistd.h>

namespace {

constexpr char path_mesh_mode[] = "/etc/meshmode.conf";
constexpr uint16_t long_range = 0xa620;
constexpr uint16_t mesh_router = 0xa667;
constexpr uint16_t mesh_router_pro = 0xa674;

constexpr uint16_t gen1[] = {0xe302, 0xe502, 0xe507, 0xe512, 0xe515, 0xe532, 0xe562,
                             0xe572, 0xe582, 0xe592, 0xe900, 0xe910, 0xe920};
constexpr uint16_t gen2[] = {0xdca8, 0xe517, 0xe527, 0xe537, 0xe547, 0xe557, 0xe567, 0xe587, 0xe597};
constexpr uint16_t gen3_two_5ghz[] = {0xe560, 0xe580, 0xe585};
constexpr uint16_t gen3_one_5ghz[] = {0xe530, 0xe540, 0xe590};
constexpr uint16_t zel5[] = {0xa610, 0xa611, 0xa612, 0xa613, 0xa614, 0xa620, 0xa640};
constexpr uint16_t zel6[] = {0xa650, 0xa651, 0xa652, 0xa653, 0xa654, 0xa655, 0xa656, 0xa657, 0xa667, 0xa674, 0xa675};
constexpr uint16_t zel6_enterprise[] = {0xa654, 0xa656};
constexpr uint16_t zel6_in_wall[] = {0xa652, 0xa656};
constexpr uint16_t zelac_in_wall[] = {0xe587, 0xe597};
constexpr uint16_t wifi_only[] = {0xa613, 0xa653, 0xdcb4, 0xdcb5, 0xec25};
constexpr uint16_t force_detect_loop[] = {0xdcb4, 0xdcb5};
constexpr uint16_t old_wifi[] = {0xe302, 0xe502, 0xe512, 0xe515, 0xe532};
constexpr uint16_t ble_fast_adopt[] = {0xa612, 0xa620, 0xa634, 0xa640, 0xa650};

template <size_t size>
bool is_one_of(const board *b, const uint16_t (&models)[size])
{
    return std::ranges::find(models, b->system_id) != models + size;
}

template <size_t size>
bool is_one_of(const uint16_t (&models)[size])
{
    return is_one_of(board_identify(), models);
}

} // namespace

// clang-format off
extern "C" {

int is_gen1(void) { return is_one_of(gen1); }
int is_gen2(void) { return is_one_of(gen2); }
int is_gen3_HB(void) { return is_one_of(gen3_two_5ghz); }
int is_single_5ghz_gen3(void) { return is_one_of(gen3_one_5ghz); }
int is_gen3(void) { return is_single_5ghz_gen3() || is_gen3_HB(); }
int is_zel5(void) { return is_one_of(zel5); }
int is_zel6(void) { return is_one_of(zel6); }
int is_zel6_enterprise(void) { return is_one_of(zel6_enterprise); }
int is_zel6_tamar_iw(void) { return is_one_of(zel6_in_wall); }
int is_zelac_iw(void) { return is_one_of(zelac_in_wall); }
int is_qca_ap(void) { return is_gen2() || is_gen3() || is_zel6(); }
int is_wifi_only(void) { return is_one_of(wifi_only); }
int is_force_detect_loop(void) { return is_one_of(force_detect_loop); }
int is_qm(void) { return board_identify()->system_id == mesh_router; }
int is_wul_supported(void) { return 1; }

int zel_is_supported_by_old_wifi(const board *b) { return b && is_one_of(b, old_wifi); }
int zel_is_supported_ble_fast_adopt(const board *b) { return b && is_one_of(b, ble_fast_adopt); }

} // extern "C"
// clang-format on

extern "C" int is_zel6_lr_aqr112c(void)
{
    const board *b = board_identify();
    return b->system_id == long_range && (b->hw_rev < 21 || b->hw_rev == 22);
}

extern "C" int is_router_to_mesh(void)
{
    return board_identify()->system_id == mesh_router_pro || (is_qm() && access(path_mesh_mode, F_OK) == 0);
}

extern "C" int is_qm_setup_complete(void)
{
    char value[8];
    return strcmp(freadvalue(path_mgmt_cfg, "mgmt.is_setup_completed", value, sizeof value, "false"), "false") != 0;
}
