// SPDX-License-Identifier: MIT
#include "tests/device/broker.h"
#include "tests/support/captured_log.h"

#include <event2/event.h>
#include <filesystem>
#include <functional>
#include <libubus.h>

namespace {

int connected, closed;

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
    vexa_ubus_interface_t *create(unsigned flags = 0) const
    {
        return vexa_ubus_create(
            base, "/var/run/ubus.sock", "power.outlet", flags, [](vexa_ubus_interface_t *) { connected++; },
            [](vexa_ubus_interface_t *) { closed++; });
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
    ASSERT_TRUE(await([&] { return log.text().find("trying again") != std::string::npos; }));
    EXPECT_TRUE(iface->timer && plain->timer && !iface->read_event && !plain->read_event);
    bus.tell("return");
    ASSERT_TRUE(await([=] { return iface->read_event && plain->read_event; }));
    EXPECT_FALSE(iface->timer);
    EXPECT_NE(iface->service_id, first) << "ids mean nothing to the new broker";
    vexa_ubus_close(iface);
    EXPECT_EQ(vexa_ubus_shutdown(), 0);
    EXPECT_EQ(std::tuple(connected, closed), std::tuple(2, 2)) << "a mended connection is no new one";
    EXPECT_THAT(log.text(),
                testing::StartsWith(
                    "[warn ] libvexa_ubus.vexa_ubus_connection_lost(): ubus connection lost, reconnecting...\n"));
    EXPECT_THAT(log.text(), testing::HasSubstr("u_reconnect_timeout(): Failed to reconnect, trying again in 1s\n"));
    EXPECT_THAT(log.text(), testing::EndsWith("[debug] libvexa_ubus.u_reconnect_timeout(): Reconnected!\n"));
}

TEST_F(bus_interface, waits_for_a_broker_only_when_told_to)
{
    const captured_log log;
    EXPECT_EQ(vexa_ubus_create(nullptr, "/tmp/bus", "s", 0, nullptr, nullptr), nullptr);
    EXPECT_EQ(create(), nullptr);
    vexa_ubus_interface_t *iface = create(VEXA_UBUS_RETRY);
    ASSERT_TRUE(iface);
    EXPECT_EQ(vexa_ubus_find_service(iface), -EINVAL) << "there is no connection";
    const broker bus;
    ASSERT_TRUE(await([=] { return iface->read_event != nullptr; }));
    EXPECT_EQ(connected, 1);
    uint32_t id = 7;
    EXPECT_EQ(vexa_ubus_find_object(iface, "power.none", &id), -ENOSYS);
    EXPECT_EQ(id, 7u);
    EXPECT_EQ(vexa_ubus_find_object(iface, "power.psu", &id), 0);
    EXPECT_EQ(log.text(), "[error] libvexa_ubus.vexa_ubus_create(): Bad parameters in initialization\n"
                          "[error] libvexa_ubus.vexa_ubus_create(): Failed to connect to ubus\n"
                          "[error] libvexa_ubus.vexa_ubus_create(): Failed to connect to ubus\n"
                          "[debug] libvexa_ubus.u_reconnect_timeout(): Reconnected!\n"
                          "[warn ] libvexa_ubus.vexa_ubus_find_object(): Failed to look up power.none object\n");
}

TEST_F(bus_interface, leaves_no_descriptor_behind)
{
    const broker bus;
    const size_t before = descriptors();
    vexa_ubus_interface_t *iface = create();
    iface->on_close = [](vexa_ubus_interface_t *) { (void)vexa_ubus_shutdown(); };
    EXPECT_EQ(vexa_ubus_create(base, iface->socket_path, "s", 0, vexa_ubus_close, vexa_ubus_close), nullptr);
    for (int i = 0; i < 1000; i++) {
        bus.tell("vanish");
        ASSERT_TRUE(await([=] { return iface->timer != nullptr; })) << i;
        bus.tell("return");
        event_active(iface->timer, EV_TIMEOUT, 1); // its second is over
        ASSERT_TRUE(await([=] { return iface->read_event != nullptr; })) << i;
    }
    ASSERT_TRUE(create() && create());
    EXPECT_EQ(vexa_ubus_shutdown(), 0);
    EXPECT_EQ(descriptors(), before);
}
