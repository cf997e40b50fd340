// SPDX-License-Identifier: MIT
// How a daemon's tests use a simulated device: the periodic reporter runs on the access point, and so does this
// program.
#include <jansson.h>
#include <libvexa.h>
#include <memory>
#include <vexa_sim_gtest.h>

namespace {

class reporter : public vexa_sim::on_device {
protected:
    vexa_sim::options device() const override { return {"access-point", false, {REPORTER}}; }
};

// satisfaction in the reporter's first report
json_int_t satisfaction_on(const char *vap)
{
    const vexa_sim::finished run = vexa_sim::run_program({REPORTER, "1", "1"});
    EXPECT_EQ(run.status, 0) << run.err;
    const std::shared_ptr<json_t> report{json_loads(run.out.c_str(), 0, nullptr), json_decref};
    return json_integer_value(
        json_object_get(json_object_get(json_object_get(report.get(), "vaps"), vap), "satisfaction"));
}

} // namespace

TEST_F(reporter, tells_when_clients_suffer)
{
    const json_int_t before = satisfaction_on("ra2");
    ASSERT_GT(before, 50);
    for (const char *thermostat : {"96:f5:1c:61:a8:44", "8a:8c:f1:8d:be:ba", "a2:f6:ad:e8:db:79"})
        vexa_sim::set(std::string{"station."} + thermostat + ".dns_timeouts=9");
    EXPECT_LT(satisfaction_on("ra2"), before);
}

TEST_F(reporter, lives_without_a_driver)
{
    vexa_sim::fail("STA_INFO2=EIO");
    EXPECT_EQ(satisfaction_on("ra2"), 0);
}

// The library itself finds the device, too.
TEST_F(reporter, reads_what_was_put_there)
{
    vexa_sim::put("/proc/vexahal/system.info", "vendorid=0777\nsystemid=a642\n");
    uint16_t vendor = 0, system = 0;
    ASSERT_EQ(board_identify_ids(&vendor, &system), 0);
    EXPECT_EQ(system, 0xa642);
    const uint8_t mac[] = {0x96, 0xf5, 0x1c, 0x61, 0xa8, 0x44};
    vexa_sim::set("station.96:f5:1c:61:a8:44.ip=192.0.2.99");
    const std::unique_ptr<stainfo, decltype(&free)> station{get_stainfo("ra2", mac), free};
    ASSERT_TRUE(station);
    EXPECT_EQ(station->ip, uint32_t{192} | 2 << 16 | 99u << 24);
}
