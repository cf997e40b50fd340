// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"

namespace {

constexpr char log_tag[] = "libvexa_util";
constexpr size_t most_samples = 359; // one more, and the next append thins
constexpr int64_t default_interval = 10;

struct series_keys {
    char array[40], time[40], interval[40];
};

template <size_t N>
bool join(char (&out)[N], const char *name, const char *suffix)
{
    return snprintf(out, N, "%s%s", name, suffix) < int(N);
}

bool make_keys(series_keys &keys, const char *name)
{
    return join(keys.array, name, "Array") && join(keys.time, name, "Time") && join(keys.interval, name, "Interval");
}

// Keeps every second sample, the first included, in the array that others may hold a reference to.
void thin(json_t *array)
{
    const size_t size = json_array_size(array);
    const size_t kept = (size + 1) / 2;
    for (size_t i = 1; i < kept; i++)
        json_array_set(array, i, json_array_get(array, 2 * i));
    for (size_t i = size; i-- > kept;)
        json_array_remove(array, i);
}

} // namespace

extern "C" int vexa_json_maybe_append_array(json_t *obj, const char *name, int64_t value)
{
    series_keys keys;
    if (!make_keys(keys, name)) {
        log_err("key too long: %s\n", name);
        return -1;
    }
    const int64_t now = qx_now.tv_sec;
    json_t *array = json_object_get(obj, keys.array);
    if (!array) {
        json_ref fresh{json_array()};
        if (!fresh || json_array_append_new(fresh.get(), json_integer(value)) != 0) {
            log_err("Failed to allocate json array");
            return -1;
        }
        json_object_set_new(obj, keys.time, json_integer(now));
        return json_object_set_new(obj, keys.array, fresh.release());
    }
    if (!json_is_array(array))
        return -1;

    const int64_t last = vexa_json_read_i64(obj, keys.time, 0);
    const int64_t interval = vexa_json_read_i64(obj, keys.interval, default_interval);
    int64_t age;
    if (last != 0 && !__builtin_sub_overflow(now, last, &age) && age < interval)
        return -2;
    if (json_array_size(array) > most_samples) {
        thin(array);
        json_object_set_new(obj, keys.interval, json_integer(int64_t(uint64_t{2} * uint64_t(interval))));
    }
    json_object_set_new(obj, keys.time, json_integer(now));
    return json_array_append_new(array, json_integer(value));
}
