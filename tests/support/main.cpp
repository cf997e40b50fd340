// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include "cross/limits.h"

sim::simulated_device the_device;

namespace {

sim::options &chosen()
{
    static sim::options options{.device = VEXA_DEVICES "/access-point",
                                .reachable = {VEXA_BUILD},
                                .writable = {VEXA_WRITABLE},
                                .driver = VEXA_BUILD "/sim/libvexa-driver.so"};
    return options;
}

bool needs_device = true;

class under_emulation : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo &test) override
    {
        const std::string name = std::string(test.test_suite_name()) + '.' + test.name();
        for (const emulation::limit &limit : emulation::limits)
            if (name == limit.test)
                GTEST_SKIP() << limit.reason;
    }
};

class on_the_device : public testing::EmptyTestEventListener {
    void OnTestProgramStart(const testing::UnitTest &) override
    {
        try {
            the_device.enter(chosen());
        } catch (const sim::refused &wrong) {
            reason_ = wrong.what();
        }
    }
    void OnTestStart(const testing::TestInfo &) override
    {
        if (!reason_.empty())
            GTEST_SKIP() << reason_;
        if (used_)
            the_device.restore();
        used_ = true;
    }

    std::string reason_;
    bool used_ = false;
};

} // namespace

runs_on::runs_on(const sim::options &options)
{
    chosen().keep_proc = options.keep_proc;
    chosen().device = VEXA_DEVICES "/" + options.device;
}

runs_on::runs_on(machine_t)
{
    needs_device = false;
}

int main(int argc, char **argv)
{
    testing::InitGoogleMock(&argc, argv);
    if (VEXA_EMULATED)
        testing::UnitTest::GetInstance()->listeners().Append(new under_emulation);
    if (needs_device)
        testing::UnitTest::GetInstance()->listeners().Append(new on_the_device);
    return RUN_ALL_TESTS();
}
