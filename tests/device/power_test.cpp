// SPDX-License-Identifier: MIT
#include "tests/device/broker.h"
#include "tests/device/json.h"
#include "tests/support/captured_log.h"

namespace {

// The document as text, which is released.
std::string taken(json_t *document)
{
    return text_of(json_ref{document}.get());
}

int update(const char *text)
{
    return vexa_outlet_status_update_json_payload(json_ref{json_loads(text, 0, nullptr)}.get());
}

} // namespace

TEST(power, tells_what_the_bus_says_and_how_old_it_may_be)
{
    const captured_log log{8};
    EXPECT_EQ(update(R"({"outlet_ac_power_budget": 1})"), -1) << "there is nothing to update";
    const broker bus;
    const std::string first =
        R"({"outlet_table":[{"index":1,"name":"A1","relay_state":true,"outlet_voltage":121.5},)"
        R"({"index":2,"relay_state":false}],"outlet_ac_power_budget":1800,"outlet_ac_energy_7":5000000000})";
    EXPECT_EQ(taken(vexa_outlet_get_outlet_status_json(60)), first);
    bus.tell("status 9");
    EXPECT_EQ(taken(vexa_outlet_get_outlet_status_json(60)), first);
    EXPECT_EQ(update(R"({"outlet_table": [{"index": 2, "relay_state": true}, {"index": 3}], "outlet_ac_energy_7": 1})"),
              0);
    EXPECT_EQ(update(R"({"outlet_table": [{"relay_state": true}]})"), -1) << "which one?";
    EXPECT_EQ(taken(vexa_outlet_get_outlet_status_json(60)),
              R"({"outlet_table":[{"index":1,"name":"A1","relay_state":true,"outlet_voltage":121.5},)"
              R"({"index":2,"relay_state":true},{"index":3}],"outlet_ac_power_budget":1800,"outlet_ac_energy_7":1})");
    EXPECT_EQ(taken(vexa_outlet_get_outlet_status_json(0)), "(none)");
    EXPECT_EQ(taken(vexa_outlet_get_outlet_status_json(60)), "(none)") << "a failure forgets the last answer";
    bus.tell("normal");
    EXPECT_EQ(taken(vexa_psu_get_json_psu_table(60)), R"([{"psu_idx":1,"present":true}])");
    EXPECT_EQ(taken(vexa_psu_get_json_psu_table(60)), R"([{"psu_idx":1,"present":true}])");
    const std::string unknown = "[error] libvexa_power.vexa_outlet_get_outlet_status_json(): Failed to invoke ubus "
                                "object [power.outlet], ret 9, Unknown error\n";
    EXPECT_EQ(
        log.text(),
        "[debug] libvexa_power.vexa_outlet_get_outlet_status_json(): init cached outlet status with 2 outlets done\n"
        "[debug] libvexa_power.vexa_outlet_get_outlet_status_json(): use cached outlet status\n"
        "[debug] libvexa_power.vexa_outlet_get_outlet_status_json(): use cached outlet status\n" +
            unknown + unknown + "[debug] libvexa_power.vexa_psu_get_json_psu_table(): use cached psu array\n");
}

TEST(power, survives_whatever_the_broker_does)
{
    const broker bus;
    const auto complaint = [&bus](const std::string &manners) {
        const std::string tag = "[error] libvexa_power.vexa_psu_get_json_psu_table(): ";
        bus.tell(manners);
        const captured_log log;
        EXPECT_EQ(taken(vexa_psu_get_json_psu_table(0)), "(none)") << manners;
        EXPECT_THAT(log.text(), testing::StartsWith(tag));
        return log.text().substr(tag.size());
    };
    EXPECT_EQ(complaint("describe {}"), "Failed to find ubus object [power.psu]\n");
    EXPECT_EQ(complaint(R"(describe {"power.psu": {}})"),
              "Failed to invoke ubus object [power.psu], ret 3, Method not found\n");
    constexpr const char *answers[][2] = {
        {"{}", "RPC invalid response, lack of error\n"},
        {R"({"result": {}})", "RPC invalid response, lack of code\n"},
        {R"({"result": {"code": 5}})", "RPC invalid response, lack of message\n"},
        {R"({"result": {"code": 5, "message": "off"}})", "Error code 5, message: off\n"},
        {R"({"psu_table": 1})", "Fail to load psu_table\n"},
        {R"({"psu_table": [{"v": NaN}]})", "Fail to load psu_table\n"},
    };
    for (const auto &[answer, line] : answers)
        EXPECT_EQ(complaint(std::string(R"(describe {"power.psu": {"status": )") + answer + "}}"), line) << answer;
    EXPECT_EQ(complaint("garbage 870000090001610001"), "RPC invalid response, lack of error\n") << "beyond its end";
    EXPECT_EQ(complaint("garbage 8300000a00017300616161ff870000090001610001000000"),
              "Wrong power.psu json on line 1: string or '}' expected near ','\n")
        << "a text without its end";
    bus.tell(R"(describe {"power.psu": {"status": {"psu_table": []}}})");
    const captured_log log;
    for (int size = 0; size < 60; size++) {
        bus.tell("cut " + std::to_string(size));
        ASSERT_EQ(vexa_psu_get_json_psu_table(60), nullptr) << size;
    }
    bus.tell("normal");
    EXPECT_EQ(taken(vexa_psu_get_json_psu_table(60)), "[]");
    bus.tell("stall");
    EXPECT_EQ(vexa_psu_get_json_psu_table(0), nullptr) << "and it comes back";
    bus.tell("vanish");
    EXPECT_EQ(vexa_psu_get_json_psu_table(0), nullptr);
}
