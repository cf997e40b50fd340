// SPDX-License-Identifier: MIT
#include "tests/device/broker.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <event2/event.h>
#include <filesystem>
#include <functional>
#include <libubus.h>

namespace {

constexpr char path[] = "/var/run/ubus.sock";
constexpr char refused[] = "[error] libvexa_ubus.vexa_ubus_create(): Failed to connect to ubus\n";

int connected, closed;

void count_connect(vexa_ubus_interface_t *)
{
    connected++;
}

void count_close(vexa_ubus_interface_t *)
{
    closed++;
}

size_t descriptors()
{
    const std::filesystem::directory_iterator open{"/proc/self/fd"};
    return size_t(std::distance(begin(open), end(open)));
}

class bus_interface : public testing::Test {
protected:
    bus_interface() { connected = closed = vexa_ubus_init(); }
    ~bus_interface() override
    {
        vexa_ubus_shutdown();
        event_base_free(base);
    }
    vexa_ubus_interface_t *create(unsigned flags = 0, const char *service = "power.outlet") const
    {
        return vexa_ubus_create(base, path, service, flags, count_connect, count_close);
    }
    // Runs the loop until then, at most ten seconds.
    bool await(const std::function<bool()> &done) const
    {
        constexpr timeval patience = {10, 0};
        event_base_loopexit(base, &patience);
        while (!done() && !event_base_got_exit(base))
            event_base_loop(base, EVLOOP_ONCE);
        return done();
    }

    event_base *base = event_base_new();
};

} // namespace

TEST_F(bus_interface, finds_its_way_back_and_looks_the_service_up_anew)
{
    const captured_log log;
    const broker bus;
    vexa_ubus_interface_t *iface = create(), *plain = create(VEXA_UBUS_NO_LOOKUP);
    ASSERT_TRUE(iface && plain);
    const uint32_t first = iface->service_id;
    EXPECT_GE(first, 1024u);
    EXPECT_EQ(plain->service_id, 0u);

    bus.tell("vanish");
    ASSERT_TRUE(await([=] { return !iface->read_event && !plain->read_event; }));
    EXPECT_TRUE(iface->timer && plain->timer);
    ASSERT_TRUE(await([&] { return log.text().find("trying again") != std::string::npos; }));
    bus.tell("return");
    ASSERT_TRUE(await([=] { return iface->read_event && plain->read_event; }));
    EXPECT_FALSE(iface->timer);
    EXPECT_NE(iface->service_id, first) << "ids mean nothing to the new broker";
    EXPECT_EQ(connected, 2) << "a mended connection is no new one";
    vexa_ubus_close(iface);
    EXPECT_EQ(vexa_ubus_shutdown(), 0);
    EXPECT_EQ(closed, 2);
    EXPECT_THAT(log.text(),
                testing::StartsWith(
                    "[warn ] libvexa_ubus.vexa_ubus_connection_lost(): ubus connection lost, reconnecting...\n"));
    EXPECT_THAT(log.text(), testing::HasSubstr("u_reconnect_timeout(): Failed to reconnect, trying again in 1s\n"));
    EXPECT_THAT(log.text(), testing::EndsWith("[debug] libvexa_ubus.u_reconnect_timeout(): Reconnected!\n"));
}

TEST_F(bus_interface, waits_for_a_broker_only_when_told_to)
{
    const captured_log log;
    EXPECT_EQ(vexa_ubus_create(nullptr, path, "s", 0, nullptr, nullptr), nullptr);
    EXPECT_EQ(vexa_ubus_create(base, path, nullptr, 0, nullptr, nullptr), nullptr);
    EXPECT_EQ(create(), nullptr);
    vexa_ubus_interface_t *iface = create(VEXA_UBUS_RETRY);
    ASSERT_TRUE(iface);
    EXPECT_EQ(vexa_ubus_find_service(iface), -EINVAL) << "there is no connection";
    EXPECT_EQ(vexa_ubus_find_service(nullptr), -EINVAL);
    const broker bus;
    ASSERT_TRUE(await([=] { return iface->read_event != nullptr; }));
    EXPECT_EQ(connected, 1);
    uint32_t id = 7;
    EXPECT_EQ(vexa_ubus_find_object(iface, "power.none", &id), -ENOSYS);
    EXPECT_EQ(id, 7u);
    EXPECT_EQ(vexa_ubus_find_object(iface, "power.psu", &id), 0);
    EXPECT_EQ(log.text(), "[error] libvexa_ubus.vexa_ubus_create(): Bad parameters in initialization\n"
                          "[error] libvexa_ubus.vexa_ubus_create(): Bad parameters in initialization\n" +
                              std::string(refused) + refused +
                              "[debug] libvexa_ubus.u_reconnect_timeout(): Reconnected!\n"
                              "[warn ] libvexa_ubus.vexa_ubus_find_object(): Failed to look up power.none object\n");
}

TEST_F(bus_interface, may_be_closed_from_its_callbacks)
{
    const broker bus;
    const size_t before = descriptors();
    EXPECT_EQ(vexa_ubus_create(base, path, "power.psu", 0, vexa_ubus_close, vexa_ubus_close), nullptr);
    const auto shut_all = [](vexa_ubus_interface_t *) { (void)vexa_ubus_shutdown(); };
    for (int i = 0; i < 3; i++)
        ASSERT_TRUE(vexa_ubus_create(base, path, "power.psu", 0, nullptr, shut_all));
    EXPECT_EQ(vexa_ubus_shutdown(), 0);
    EXPECT_EQ(descriptors(), before);
}

TEST_F(bus_interface, reconnects_a_thousand_times_without_a_trace)
{
    const broker bus;
    vexa_ubus_interface_t *iface = create();
    ASSERT_TRUE(iface);
    const size_t before = descriptors();
    for (int i = 0; i < 1000; i++) {
        bus.tell("vanish");
        ASSERT_TRUE(await([=] { return iface->timer != nullptr; })) << i;
        bus.tell("return");
        event_active(iface->timer, EV_TIMEOUT, 1); // its second is over
        ASSERT_TRUE(await([=] { return iface->read_event != nullptr; })) << i;
    }
    EXPECT_EQ(descriptors(), before);
}
