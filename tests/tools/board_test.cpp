// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

namespace {

const runs_on no_device{the_machine}; // each command makes its own, with a /proc where no leak detector can look

finished on(const std::string &device, const std::string &command)
{
    const std::string line = "ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 " VEXACTL " --json " + command;
    return run_program({VEXA_SIM, "run", "--device", device, "--", "sh", "-c", line});
}

} // namespace

TEST(board, is_what_each_device_says_of_itself)
{
    if (const finished trial = on("empty", "board"); trial.status == 77)
        GTEST_SKIP() << trial.err;
    const struct {
        std::string device, model, system_id, mac, predicate;
        size_t ports, radios;
        int accelerometer, gateway; // statuses
    } rows[] = {
        {"access-point", "Jay 5 Long Range", "a620", "02:56:58:00:10:01", "is_zel5", 1, 2, 0, 0},
        {"in-wall", "Wren 5", "a614", "02:56:58:00:20:01", "is_zel5", 5, 2, 1, 0},
        {"gateway", "Stork 5", "e990", "02:56:58:00:30:01", "is_wul_supported", 5, 0, 1, 1},
        {"beta", "Jay 5 Preview", "a643", "02:56:58:00:40:01", "corvo_board_is_beta_firmware", 1, 2, 1, 0},
        {"legacy", "Unknown", "0000", "(none)", "is_wul_supported", 0, 2, 1, 1},
        {"empty", "Unknown", "0000", "(none)", "is_wul_supported", 0, 0, 1, 1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.device);
        const json_document page = json_of(on(row.device, "board").out);
        const json_t *device = json_object_get(page.get(), "device");
        EXPECT_EQ(member_text(device, "model"), row.model);
        EXPECT_EQ(member_text(device, "system_id"), row.system_id);
        EXPECT_EQ(member_text(device, "cpu_mac"), row.mac);
        EXPECT_EQ(json_array_size(json_object_get(page.get(), "ports")), row.ports);
        EXPECT_EQ(json_array_size(json_object_get(page.get(), "radios")), row.radios);
        const std::string predicates = on(row.device, "model").out;
        EXPECT_THAT(predicates, testing::ContainsRegex("\"" + row.predicate + "\",\n *\"holds\": true"));
        EXPECT_LT(predicates.rfind("true"), predicates.find("false"));
        EXPECT_EQ(on(row.device, "accelerometer").status, row.accelerometer);
        EXPECT_EQ(on(row.device, "gateway").status, row.gateway);
    }
    const struct {
        std::string device, command;
        int status, rows; // -1: an error instead
    } lists[] = {
        {"empty", "bridge", 0, 0},      {"empty", "fdb", 0, 0},           {"in-wall", "bridge br0", 0, 5},
        {"empty", "boards", 0, 11},     {"empty", "boards --all", 0, 73}, {"empty", "services", 0, 5},
        {"empty", "status no0", 1, -1}, {"in-wall", "bridge no0", 1, -1}, {"in-wall", "fdb ..", 1, -1},
    };
    for (const auto &list : lists) {
        const finished done = on(list.device, list.command);
        EXPECT_EQ(done.status, list.status) << list.command;
        const json_document shown = list.rows < 0 ? nullptr : json_of(done.out);
        EXPECT_EQ(json_is_array(shown.get()) ? int(json_array_size(shown.get())) : -1, list.rows) << list.command;
    }
}
