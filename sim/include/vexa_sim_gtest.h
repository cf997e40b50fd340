// SPDX-License-Identifier: MIT
// A GoogleTest fixture on a simulated device; header only, for any main() that runs the tests.
#ifndef VEXA_SIM_GTEST_H
#define VEXA_SIM_GTEST_H

#include "vexa_sim.h"

#include <gtest/gtest.h>

namespace vexa_sim {

// Each test finds the device as it is at first; where the kernel has none for us, it is skipped and says why. A test
// program runs on one device:
//
//     class gateway : public vexa_sim::on_device {
//         vexa_sim::options device() const override { return {"gateway"}; }
//     };
class on_device : public testing::Test {
protected:
    virtual options device() const { return {}; }

    void SetUp() override
    {
        static const std::string refusal = why_not(device());
        if (!refusal.empty())
            GTEST_SKIP() << refusal;
        restore();
    }

private:
    static std::string why_not(const options &chosen)
    {
        try {
            enter(chosen);
            return {};
        } catch (const refused &reason) {
            return reason.what();
        }
    }
};

} // namespace vexa_sim

#endif
