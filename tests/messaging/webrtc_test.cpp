// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"
#include "tests/support/service.h"

namespace {

request_block block()
{
    request_block req{0, "", "stun.example", "ann", -7, "", "c"};
    memset(req.turn, 'x', sizeof req.turn); // no room for a zero
    memcpy(req.reg_url, "https://reg.example/", 20);
    return req;
}

// One request; with what it gave in `out`.
struct offered : webrtc_inform {
    explicit offered(const char *session) : webrtc_inform{}
    {
        const request_block req = block();
        offer = strdup("old");
        reserved = strdup("old");
        result = get_next_sdp_offer(session, &req, this);
    }
    offered(const offered &) = delete;
    ~offered() { free_webrtc_inform(this); }
    int result;
};

} // namespace

TEST(webrtc, negotiates_lists_and_closes_a_session)
{
    const service listener{{VEXA_WEBRTC}};
    const captured_log log{4};
    const std::string turn(400, 'x');
    listener.tell("incomplete 3");
    {
        const offered got{"s-1"};
        ASSERT_EQ(got.result, 0);
        EXPECT_STREQ(got.uuid, "s-1");
        EXPECT_EQ(got.turn_creds, "turn:" + turn);
        EXPECT_THAT(got.offer, testing::StartsWith("v=0\r\n"));
        EXPECT_THAT(log.text(),
                    testing::StartsWith("[info ] libvexa_webrtc.get_next_sdp_offer(): SDP request: uuid<s-1>, "
                                        "stun<stun.example>, turn<" +
                                        turn +
                                        ">, username<ann> turn_query<-7>, "
                                        "reg_url<https://reg.example/>, creds_url<c>\n"
                                        "[info ] libvexa_webrtc.get_next_sdp_offer(): Get SDP offer: "
                                        "uuid<early>, complete<false>, turn_creds: <early>, offer<>\n"));
        EXPECT_THAT(log.text(), testing::HasSubstr(", complete<true>, turn_creds: <turn:" + turn + ">, offer<v=0\r\n"));
    }
    char *accepted = nullptr, *refused = nullptr, list[548 + 1] = "";
    const captured_log answers{4};
    EXPECT_EQ(set_sdp_answer("s-1", ("v=0" + std::string(40000, ' ')).c_str(), &accepted), 0);
    EXPECT_STREQ(accepted, "s-1");
    free(accepted);
    EXPECT_EQ(set_sdp_answer("s-2", "nonsense", &refused), 0);
    EXPECT_EQ(refused, nullptr);
    EXPECT_THAT(
        answers.text(),
        testing::EndsWith("[info ] libvexa_webrtc.set_sdp_answer(): Set SDP success: uuid<s-1>\n"
                          "[info ] libvexa_webrtc.set_sdp_answer(): Set SDP answer: uuid<s-2>, answer<nonsense>\n"
                          "[error] libvexa_webrtc.set_sdp_answer(): Set SDP fail: uuid<s-2>\n"));
    EXPECT_EQ(get_all_sdp_sessions(list), 1);
    EXPECT_EQ(memcmp(list, "\1\0\0\0s-1", 8), 0);
    EXPECT_EQ(close_sdp_session("s-1"), 0);
    list[0] = 'u';
    EXPECT_EQ(get_all_sdp_sessions(list), 0);
    EXPECT_EQ(list[0], 'u') << "untouched";
}

TEST(webrtc, bounds_and_ignores_what_the_listener_sends)
{
    const service listener{{VEXA_WEBRTC}};
    const struct {
        const char *manners;
        int result;
        std::string uuid, turn_creds, offer;
    } rows[] = {
        {"foreign 2", 0, std::string(63, 'i'), "turn:" + std::string(400, 'x'), "v=0\r\n"},
        {"brim", 0, std::string(64, 'u'), std::string(1807, 't'), "v=0\r\n"},
        {"torn", -1, std::string(63, 'i'), "turn:" + std::string(400, 'x'), ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.manners);
        listener.tell(row.manners);
        const offered got{std::string(100, 'i').c_str()};
        EXPECT_EQ(got.result, row.result);
        EXPECT_EQ(got.uuid, row.uuid);
        EXPECT_EQ(got.turn_creds, row.turn_creds);
        EXPECT_THAT(got.offer ? got.offer : "", testing::StartsWith(row.offer));
        EXPECT_EQ(got.offer == nullptr, row.offer.empty());
    }
    char list[548];
    for (const auto &[manners, result] :
         {std::pair{"count 2000000000", 2000000000}, {"count -1", 0}, {"refuse 5", 0}}) {
        listener.tell(manners);
        EXPECT_EQ(get_all_sdp_sessions(list), result) << manners;
    }
}

TEST(webrtc, ends_without_a_listener_and_with_one_that_breaks_off)
{
    const request_block req = block();
    webrtc_inform out{};
    char list[548], *uuid = list;
    {
        const captured_log log{4};
        EXPECT_EQ(get_next_sdp_offer("s", &req, &out), -1);
        EXPECT_EQ(set_sdp_answer("s", "v=0", &uuid), -1);
        EXPECT_EQ(get_all_sdp_sessions(list), -1);
        EXPECT_EQ(close_sdp_session("s"), -1);
        std::string lines;
        for (const char *func : {"get_next_sdp_offer", "set_sdp_answer", "get_all_sdp_sessions", "close_sdp_session"})
            lines += std::string{"connect: Connection refused\n[error] libvexa_webrtc."} + func + "(): Socket error\n";
        EXPECT_EQ(log.text(), lines);
    }
    const service listener{{VEXA_WEBRTC}};
    const captured_log log{2};
    listener.tell("break");
    EXPECT_EQ(get_next_sdp_offer("s", &req, &out), -ENOENT);
    EXPECT_EQ(log.text(), "[warn ] libvexa_webrtc.get_next_sdp_offer(): Get SDP offer: uuid<s> TIMEOUT! "
                          "errno:104/Connection reset by peer\n");
    listener.tell("silent");
    EXPECT_EQ(get_all_sdp_sessions(list), 0);
    EXPECT_THAT(log.text(), testing::EndsWith("get_all_sdp_sessions(): SDP get all sessions: TIMEOUT!\n"));
    listener.tell("break");
    EXPECT_EQ(set_sdp_answer("s", "v=0", &uuid), 0);
    EXPECT_EQ(uuid, list) << "untouched";
    EXPECT_THAT(log.text(),
                testing::EndsWith("[warn ] libvexa_webrtc.set_sdp_answer(): Set SDP answer: uuid<s> TIMEOUT!\n"));
}
