// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

namespace {

const runs_on no_device{the_machine}; // the command makes its own, with its cloud

finished http(const char *cloud, const std::string &arguments)
{
    const std::string line = "ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 " VEXACTL " http " + arguments;
    return run_program({VEXA_SIM, "run", cloud, "sh", "-c", line});
}

} // namespace

TEST(http_verb, sends_requests_to_the_cloud_that_shows_what_arrived)
{
    if (const finished trial = run_program({VEXA_SIM, "run", "--device", "empty", "--", "true"}); trial.status == 77)
        GTEST_SKIP() << trial.err;
    const struct {
        std::string arguments;
        int status;
        const char *out, *err; // a part of each
        const char *arrived;   // at the cloud; empty: there is none
    } rows[] = {
        {"post https://www.vexa.example/echo --json --json-body '{\"a\": [1]}'", 0, "\"body\": \"{\\\"a\\\":[1]}\"", "",
         "POST    www.vexa.example/echo  9      200"},
        {"put https://hidden.vexa.example/echo --doh --body /etc/hostname --format kv", 0, "whole='true'", "",
         "PUT     hidden.vexa.example/echo"},
        {"get https://www.vexa.example/nothing", 1, "nothing here", "answers with status 404", "/nothing  0      404"},
        {"get https://hidden.vexa.example/", 3, "", "Couldn't resolve host name", "(0 requests)"},
        {"get https://www.vexa.example/ --fallback", 2, "", "--fallback goes with --doh", ""},
        {"put https://www.vexa.example/ --json-body 1", 2, "", "takes an object or an array", ""},
        {"put https://www.vexa.example/ --body /no/file", 2, "", "/no/file", ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.arguments);
        const finished done = http(*row.arrived ? "--cloud" : "--", row.arguments);
        EXPECT_EQ(done.status, row.status);
        EXPECT_THAT(done.out, testing::HasSubstr(row.out));
        EXPECT_THAT(done.err, testing::HasSubstr(row.err));
        EXPECT_THAT(done.err, testing::HasSubstr(row.arrived));
    }
}
