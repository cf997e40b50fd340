// SPDX-License-Identifier: MIT
#include "tests/messaging/entries.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <sys/stat.h>

TEST(uds_socket_create, leaves_nothing_behind_when_it_fails)
{
    constexpr uid_t ordinary = 65534;
    const std::string too_long = "/var/run/" + std::string(100, 'x');
    uds_sock theirs;
    the_device.put(too_long, "not ours");
    ASSERT_GE(uds_sock_open_server("/var/run/theirs", &theirs), 0);
    const struct {
        uid_t user;
        mode_t folder;
        bool server;
        std::string path, line;
    } rows[] = {
        {0, 0755, true, too_long, "bind error, path:.*xx, errno:36/File name too long"},
        {0, 0755, true, "/var/run/none/x", "bind error, path:/var/run/none/x, errno:2/No such file or directory"},
        {0, 0755, true, "/proc", "bind error, path:/proc, errno:98/Address already in use"},
        {0, 0755, false, "/var/run/none", "connect error, path:/var/run/none, errno:2/No such file or directory"},
        {0, 0755, false, too_long, "connect error, path:.*xx, errno:36/File name too long"},
        {ordinary, 0755, true, "/var/run/theirs", "bind error, path:/var/run/theirs, errno:98/Address already in use"},
        {ordinary, 0755, true, "/var/run/mine", "bind error, path:/var/run/mine, errno:13/Permission denied"},
        {ordinary, 0755, false, "/var/run/theirs",
         "bind error, path:/var/run/uds_client-.*, errno:13/Permission denied"},
        {ordinary, 01777, false, "/var/run/theirs", "connect error, path:/var/run/theirs, errno:13/Permission denied"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.line);
        ASSERT_EQ(chmod("/var/run", row.folder), 0);
        const ptrdiff_t files = entries("/var/run"), descriptors = entries();
        if (seteuid(row.user) != 0)
            GTEST_SKIP() << "the user namespace knows no other user";
        {
            const captured_log log;
            uds_sock s;
            EXPECT_EQ(uds_socket_create(row.path.c_str(), &s, row.server), -1);
            uds_sock_close(&s);
            EXPECT_THAT(log.text(),
                        testing::MatchesRegex("\\[error\\] uds.uds_socket_create\\(\\): " + row.line + "\n"));
        }
        ASSERT_EQ(seteuid(0), 0);
        EXPECT_EQ(entries("/var/run"), files);
        EXPECT_EQ(entries(), descriptors);
    }
    chmod("/var/run", 0755);
    uds_sock_close(&theirs);
}
