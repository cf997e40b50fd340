// SPDX-License-Identifier: MIT
#include "tests/support/service.h"
#include "tests/tools/vexactl.h"

#define AT "--socket /var/run/x.sock "

TEST(msg, goes_from_one_prompt_to_another)
{
    // the receiver drops the first one; its file tells that it listens, and is gone at the end
    const finished done = shell("coproc $VEXACTL msg recv --json --type -2 --timeout 20 " AT "; exec 9<&${COPROC[0]};"
                                "until [ -S /var/run/x.sock ]; do sleep 0.01; done;"
                                "$VEXACTL msg recv " AT "; $VEXACTL msg send dropped --type 1 " AT ";"
                                "$VEXACTL msg send --hex 6869ff --type -2 " AT "; cat <&9; ls /var/run/x.sock");
    const size_t answer = done.out.find('{');
    ASSERT_NE(answer, done.out.npos) << done.err;
    EXPECT_EQ(done.out.substr(0, answer), "7 bytes sent\n3 bytes sent\n");
    const json_document got = json_of(done.out.substr(answer));
    EXPECT_EQ(member_text(got.get(), "hex"), "6869ff");
    EXPECT_THAT(member_text(got.get(), "from"), testing::StartsWith("/var/run/uds_client-"));
    EXPECT_THAT(done.err, testing::MatchesRegex("vexactl: another program listens at /var/run/x.sock\nls: .*\n"));
}

TEST(msg, tells_why_it_does_nothing)
{
    the_device.put("/var/run/x.sock", "precious");
    const struct {
        std::string line, error;
        int status;
    } rows[] = {
        {"recv --timeout 1 " AT, "/var/run/x.sock is no socket", 3},
        {"recv --timeout 1 --socket /var/run/none/x", "/var/run/none/x: No such file or directory", 3},
        {"recv --timeout 1 --socket /var/run/y.sock", "no message came", 1},
        {"send x --type 1 --socket /var/run/none", "/var/run/none: No such file or directory", 3},
        {"send x " AT, "msg send: --type is missing", 2},
        {"send --type 1 " AT, "msg send: either TEXT or --hex is needed", 2},
        {"send x --type 2147483648 " AT, "msg send: --type takes a number of 32 bits, --timeout one from 0 to 65535",
         2},
    };
    for (const auto &row : rows) {
        const finished done = shell("$VEXACTL msg " + row.line);
        EXPECT_EQ(done.err, "vexactl: " + row.error + "\n");
        EXPECT_EQ(done.status, row.status) << row.line;
    }
    EXPECT_EQ(the_device.text("/var/run/x.sock"), "precious");
}

TEST(webrtc, offers_answers_lists_and_closes)
{
    EXPECT_EQ(vexactl({"webrtc", "close", "s"}).err, "vexactl: nobody listens at IPC_WEBRTC_LISTENER\n");
    const service listener{{VEXA_WEBRTC}};
    const finished done = vexactl({"webrtc", "offer", "s", "--turn", "t.example", "--json"});
    const json_document offer = json_of(done.out);
    EXPECT_EQ(member_text(offer.get(), "turn_creds"), "turn:t.example");
    EXPECT_THAT(member_text(offer.get(), "offer"), testing::StartsWith("v=0\r\n"));
    EXPECT_EQ(vexactl({"webrtc", "answer", "s", "v=0"}).status, 0);
    EXPECT_EQ(vexactl({"webrtc", "answer", "s", "no"}).status, 1);
    EXPECT_EQ(vexactl({"webrtc", "sessions", "--format", "kv"}).out,
              "count='1'\nlist='73" + std::string(126, '0') + "01'\n");
    EXPECT_EQ(vexactl({"webrtc", "close", "s"}).status, 0);
    EXPECT_EQ(vexactl({"webrtc", "sessions"}).out, "Sessions  0\nList\n");
    EXPECT_EQ(vexactl({"webrtc", "offer", "s", "--user", std::string(201, 'x')}).status, 2);
    listener.tell("break");
    EXPECT_EQ(vexactl({"webrtc", "offer", "s"}).err, "vexactl: no offer came\n");
}
