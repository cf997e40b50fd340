// SPDX-License-Identifier: MIT
#include "core/format.h"
#include "core/owner.h"

#include <libvexa.h>

#define ACCELEROMETER "/sys/bus/i2c/devices/1-0018/iio:device0/"

extern "C" int has_accelerometer(void)
{
    return bool(unique_dir{opendir(ACCELEROMETER)});
}

extern "C" json_t *prepare_accelerometer_status(void)
{
    (void)fwriteline(ACCELEROMETER "sampling_frequency", "50");
    json_ref status{json_object()};
    for (const char *axis : {"x", "y", "z"}) {
        char path[80];
        char line[8];
        (void)format_whole(path, sizeof path, ACCELEROMETER "in_accel_%s_raw", axis);
        const long value = strtol(freadline(path, line, sizeof line, "0"), nullptr, 10);
        if (json_object_set_new(status.get(), axis, json_integer(value)) != 0)
            return nullptr;
    }
    return status.release();
}
