// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include "core/log.h"

#include <cerrno>
#include <jansson.h>
#include <sys/socket.h>
#include <sys/un.h>

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

namespace {

constexpr char log_tag[] = "cfg";

// what syslogd would read at /dev/log
class system_log {
public:
    system_log() : socket_{socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)}
    {
        const sockaddr_un address{AF_UNIX, "/dev/log"};
        EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        the_device.put("/var/log/messages", "");
    }
    ~system_log()
    {
        closelog();
        close(socket_);
    }

    std::string line() const
    {
        char text[4096];
        const ssize_t length = recv(socket_, text, sizeof text, 0);
        return {text, length < 0 ? 0 : size_t(length)};
    }

private:
    int socket_;
};

std::string log_json(json_t *json, const char *title, const char *module = "m")
{
    const captured_log log;
    libvexa_log_json(LOG_INFO, module, "f", json, title);
    json_decref(json);
    return log.text();
}

} // namespace

TEST(libvexa_log, goes_to_the_system_log_while_its_file_is_there)
{
    const system_log log;
    libvexa_log(LOG_ERR, "cfg", "parse", "x");
    const std::string number = std::to_string(getpid());
    EXPECT_THAT(log.line(), AllOf(StartsWith("<11>"), EndsWith(": core_test[" + number + "]: cfg.parse(): x\n")));

    libvexa_log(LOG_INFO, "m", "f", "%s", std::string(2000, 'y').c_str());
    EXPECT_THAT(log.line(), EndsWith(" m.f(): " + std::string(1023, 'y') + "\n"));
}

TEST(libvexa_log, goes_to_the_kernel_log_without_a_system_log_and_to_standard_error_without_either)
{
    const std::string start = "core_test[" + std::to_string(getpid()) + "]: [error] cfg.parse(): ";
    libvexa_log(LOG_ERR, "cfg", "parse", "%s", std::string(2000, 'y').c_str());
    EXPECT_EQ(the_device.text("/dev/kmsg"), start + std::string(2000, 'y') + "\n");

    the_device.remove("/dev/kmsg");
    ASSERT_EQ(symlink("/tmp/elsewhere", "/dev/kmsg"), 0); // not followed
    const captured_log log;
    libvexa_log_use_syslog = 1;
    libvexa_log(LOG_ERR, "cfg", "parse", "x");
    EXPECT_EQ(log.text(), "[error] cfg.parse(): x\n");
}

TEST(libvexa_log_level, lets_each_kind_of_line_through_from_its_own_level_on)
{
    const struct {
        uint32_t level;
        const char *kinds;
    } rows[] = {{0, ""}, {1, "e"}, {2, "ew"}, {3, "ew"}, {4, "ewi"}, {8, "ewid"}, {15, "ewid"}, {16, "ewidv"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.level);
        const captured_log log{row.level};
        log_err("e");
        log_warn("w");
        log_info("i");
        log_debug("d");
        log_verbose("v");
        std::string kinds;
        const std::string text = log.text();
        for (size_t i = 1; i < text.size(); i++)
            if (text[i] == '\n')
                kinds += text[i - 1];
        EXPECT_EQ(kinds, row.kinds);
    }
}

TEST(libvexa_log_json, numbers_the_lines_and_continues_those_that_are_too_long)
{
    EXPECT_EQ(log_json(nullptr, nullptr), "[info ] m.f(): JSON -     : null data\n");
    EXPECT_EQ(log_json(json_pack("{s:i}", "a", 1), "title"), "[info ] m.f(): JSON -     : title\n"
                                                             "[info ] m.f(): JSON -    1: {\n"
                                                             "[info ] m.f(): JSON -    2:     \"a\": 1\n"
                                                             "[info ] m.f(): JSON -    3: }\n");
    EXPECT_THAT(log_json(json_pack("[s]", "ab"), nullptr, std::string(2000, 'n').c_str()), EndsWith("JSON -    3: ]\n"))
        << "names that leave no room";

    const std::string prefix = "core_test: core_test[" + std::to_string(getpid()) + "]: m.f(): JSON -     : ";
    const size_t chunk = 960 - prefix.size(), quoted = chunk - strlen("    \"\"");
    const struct {
        const char *why;
        size_t length;
        std::string second_line;
    } rows[] = {
        {"a full chunk has no empty continuation", quoted, ""},
        {"one character more goes on in a line without a number", quoted + 1, "[info ] m.f(): JSON -     : \"\n"},
        {"two full chunks", quoted + chunk, "[info ] m.f(): JSON -     : " + std::string(chunk - 1, 'x') + "\"\n"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        const std::string text(row.length, 'x');
        const std::string first = ("    \"" + text + "\"").substr(0, chunk);
        EXPECT_EQ(log_json(json_pack("[s]", text.c_str()), nullptr),
                  "[info ] m.f(): JSON -    1: [\n[info ] m.f(): JSON -    2: " + first + "\n" + row.second_line +
                      "[info ] m.f(): JSON -    3: ]\n");
    }
}

TEST(libvexa_log_hex, writes_sixteen_bytes_a_line_under_a_heading)
{
    unsigned char bytes[17];
    for (size_t i = 0; i < sizeof bytes; i++)
        bytes[i] = (unsigned char)(0xf0 + i);
    const std::string first = "[debug] m.f(): 00000000: f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb fc fd fe ff\n";
    const struct {
        const char *why;
        const unsigned char *data;
        int length;
        const char *title;
        std::string heading, lines;
    } rows[] = {
        {"a last line of one byte", bytes, 17, "t", "t - HEX\\(0x[0-9a-f]+\\) len 17",
         first + "[debug] m.f(): 00000010: 00\n"},
        {"a full last line", bytes, 16, nullptr, " - HEX\\(0x[0-9a-f]+\\) len 16", first},
        {"no bytes", bytes, 0, "t", "t - HEX\\(0x[0-9a-f]+\\) len 0", ""},
        {"a negative length", bytes, -1, "t", "t - HEX\\(0x[0-9a-f]+\\) len -1", ""},
        {"no data", nullptr, 4, "t", "t - HEX\\(.*nil.*\\) len 4", ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        const captured_log log;
        libvexa_log_hex(LOG_DEBUG, "m", "f", row.data, row.length, row.title);
        const std::string text = log.text();
        const size_t end = text.find('\n');
        EXPECT_THAT(text.substr(0, end), MatchesRegex("\\[debug\\] m.f\\(\\): " + row.heading));
        EXPECT_EQ(text.substr(end + 1), row.lines);
    }
}
