// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include <set>

namespace {

using models = std::set<uint16_t>;

models operator+(models a, const models &b)
{
    a.insert(b.begin(), b.end());
    return a;
}

const models gen1{0xe302, 0xe502, 0xe507, 0xe512, 0xe515, 0xe532, 0xe562,
                  0xe572, 0xe582, 0xe592, 0xe900, 0xe910, 0xe920};
const models gen2{0xdca8, 0xe517, 0xe527, 0xe537, 0xe547, 0xe557, 0xe567, 0xe587, 0xe597};
const models gen3_hb{0xe560, 0xe580, 0xe585};
const models gen3_single{0xe530, 0xe540, 0xe590};
const models zel6{0xa650, 0xa651, 0xa652, 0xa653, 0xa654, 0xa655, 0xa656, 0xa657, 0xa667, 0xa674, 0xa675};

const struct {
    const char *name;
    int (*holds)();
    models where;
} predicates[] = {
    {"is_gen1", is_gen1, gen1},
    {"is_gen2", is_gen2, gen2},
    {"is_gen3_HB", is_gen3_HB, gen3_hb},
    {"is_single_5ghz_gen3", is_single_5ghz_gen3, gen3_single},
    {"is_gen3", is_gen3, gen3_hb + gen3_single},
    {"is_zel5", is_zel5, {0xa610, 0xa611, 0xa612, 0xa613, 0xa614, 0xa620, 0xa640}},
    {"is_zel6", is_zel6, zel6},
    {"is_zel6_enterprise", is_zel6_enterprise, {0xa654, 0xa656}},
    {"is_zel6_tamar_iw", is_zel6_tamar_iw, {0xa652, 0xa656}},
    {"is_zel6_lr_aqr112c", is_zel6_lr_aqr112c, {0xa620}},
    {"is_zelac_iw", is_zelac_iw, {0xe587, 0xe597}},
    {"is_qca_ap", is_qca_ap, gen2 + gen3_hb + gen3_single + zel6},
    {"is_wifi_only", is_wifi_only, {0xa613, 0xa653, 0xdcb4, 0xdcb5, 0xec25}},
    {"is_force_detect_loop", is_force_detect_loop, {0xdcb4, 0xdcb5}},
    {"is_qm", is_qm, {0xa667}},
    {"is_router_to_mesh", is_router_to_mesh, {0xa674}},
    {"zel_is_supported_by_old_wifi",
     [] { return zel_is_supported_by_old_wifi(board_identify()); },
     {0xe302, 0xe502, 0xe512, 0xe515, 0xe532}},
    {"zel_is_supported_ble_fast_adopt",
     [] { return zel_is_supported_ble_fast_adopt(board_identify()); },
     {0xa612, 0xa620, 0xa634, 0xa640, 0xa650}},
};

board b;

} // namespace

TEST(model, answers_for_each_of_all_system_ids)
{
    update_cached_board(&b);
    for (const auto &predicate : predicates) {
        models found;
        for (unsigned id = 0; id <= UINT16_MAX; id++) {
            b.system_id = uint16_t(id);
            const int answer = predicate.holds();
            ASSERT_TRUE(answer == 0 || answer == 1);
            if (answer)
                found.insert(b.system_id);
        }
        EXPECT_EQ(found, predicate.where) << predicate.name;
        for (const uint16_t id : predicate.where)
            EXPECT_NE(corvo_get_device(id), nullptr) << predicate.name << id;
    }
    EXPECT_EQ(zel_is_supported_by_old_wifi(nullptr) + zel_is_supported_ble_fast_adopt(nullptr), 0);
    EXPECT_EQ(is_wul_supported(), 1);
}
