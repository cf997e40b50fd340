// SPDX-License-Identifier: MIT
#include "tests/device/broker.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <jansson.h>

namespace {

// The document as text, which is released.
std::string text_of(json_t *document)
{
    char *text = document ? json_dumps(document, JSON_COMPACT) : nullptr;
    const std::string result = text ? text : "";
    free(text);
    json_decref(document);
    return result;
}

int update(const char *text)
{
    json_t *document = json_loads(text, 0, nullptr);
    const int result = vexa_outlet_status_update_json_payload(document);
    json_decref(document);
    return result;
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
    EXPECT_EQ(text_of(vexa_outlet_get_outlet_status_json(60)), first);
    bus.tell("status 9");
    EXPECT_EQ(text_of(vexa_outlet_get_outlet_status_json(60)), first);
    EXPECT_EQ(update(R"({"outlet_table": [{"index": 2, "relay_state": true}, {"index": 3}], "outlet_ac_energy_7": 1})"),
              0);
    EXPECT_EQ(update(R"({"outlet_table": [{"relay_state": true}]})"), -1) << "which one?";
    EXPECT_EQ(text_of(vexa_outlet_get_outlet_status_json(60)),
              R"({"outlet_table":[{"index":1,"name":"A1","relay_state":true,"outlet_voltage":121.5},)"
              R"({"index":2,"relay_state":true},{"index":3}],"outlet_ac_power_budget":1800,"outlet_ac_energy_7":1})");
    EXPECT_EQ(text_of(vexa_outlet_get_outlet_status_json(0)), "");
    EXPECT_EQ(text_of(vexa_outlet_get_outlet_status_json(60)), "") << "a failure forgets the last answer";
    bus.tell("normal");
    EXPECT_EQ(text_of(vexa_psu_get_json_psu_table(60)), R"([{"psu_idx":1,"present":true}])");
    EXPECT_EQ(text_of(vexa_psu_get_json_psu_table(60)), R"([{"psu_idx":1,"present":true}])");
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
    constexpr char tag[] = "[error] libvexa_power.vexa_psu_get_json_psu_table(): ";
    const broker bus;
    const struct {
        const char *why, *manners, *line;
    } rows[] = {
        {"nobody offers it", "describe {}", "Failed to find ubus object [power.psu]\n"},
        {"it knows no such method", R"(describe {"power.psu": {}})",
         "Failed to invoke ubus object [power.psu], ret 3, Method not found\n"},
        {"nothing of use", R"(describe {"power.psu": {"status": {}}})", "RPC invalid response, lack of error\n"},
        {"no code", R"(describe {"power.psu": {"status": {"result": {}}}})", "RPC invalid response, lack of code\n"},
        {"no text", R"(describe {"power.psu": {"status": {"result": {"code": 5}}}})",
         "RPC invalid response, lack of message\n"},
        {"an error", R"(describe {"power.psu": {"status": {"result": {"code": 5, "message": "off"}}}})",
         "Error code 5, message: off\n"},
        {"no array", R"(describe {"power.psu": {"status": {"psu_table": 1}}})", "Fail to load psu_table\n"},
        {"a number that is none in JSON", R"(describe {"power.psu": {"status": {"psu_table": [{"v": NaN}]}}})",
         "Fail to load psu_table\n"},
        {"a field beyond the end of its message", "garbage 870000090001610001",
         "RPC invalid response, lack of error\n"},
        {"a text without its end", "garbage 8300000a00017300616161ff870000090001610001000000",
         "Wrong power.psu json on line 1: string or '}' expected near ','\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        bus.tell(row.manners);
        const captured_log log;
        EXPECT_EQ(vexa_psu_get_json_psu_table(60), nullptr);
        EXPECT_EQ(log.text(), std::string(tag) + row.line);
    }
    bus.tell(R"(describe {"power.psu": {"status": {"psu_table": []}}})");
    const captured_log log;
    for (int size = 0; size < 60; size++) {
        bus.tell("cut " + std::to_string(size));
        ASSERT_EQ(vexa_psu_get_json_psu_table(60), nullptr) << size;
    }
    bus.tell("normal");
    EXPECT_EQ(text_of(vexa_psu_get_json_psu_table(60)), "[]");
    bus.tell("stall");
    EXPECT_EQ(vexa_psu_get_json_psu_table(0), nullptr) << "and it comes back";
    bus.tell("vanish");
    EXPECT_EQ(vexa_psu_get_json_psu_table(0), nullptr);
}
