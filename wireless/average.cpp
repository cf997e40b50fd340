// SPDX-License-Identifier: MIT
#include <algorithm>
#include <libvexa.h>
#include <limits>

namespace {

template <typename T>
constexpr T saturating_add(T a, T b)
{
    T sum;
    if (__builtin_add_overflow(a, b, &sum))
        return b < 0 ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
    return sum;
}

constexpr uint64_t magnitude(int64_t n)
{
    return n < 0 ? 0 - uint64_t(n) : uint64_t(n);
}

constexpr uint64_t distance(int64_t a, int64_t b)
{
    return a < b ? uint64_t(b) - uint64_t(a) : uint64_t(a) - uint64_t(b);
}

constexpr uint64_t square_root(uint64_t n)
{
    uint64_t root = 0;
    for (uint64_t bit = uint64_t{1} << 31; bit != 0; bit >>= 1)
        if ((root + bit) * (root + bit) <= n)
            root += bit;
    return root;
}
static_assert(square_root(24) == 4 && square_root(25) == 5 && square_root(uint64_t(INT64_MAX)) == 3037000499);

int64_t mean_of(const int64_t *values, size_t count)
{
    int64_t sum = 0;
    for (size_t i = 0; i < count; i++)
        sum = saturating_add(sum, values[i]);
    return vexa_avg_round(sum, int64_t(count));
}

// The sum of squares is a whole number again after each addition.
int64_t squares_around(int64_t mean, const int64_t *values, size_t count)
{
    constexpr double beyond = 9223372036854775808.0;
    int64_t sum = 0;
    for (size_t i = 0; i < count; i++) {
        const double difference = double(distance(values[i], mean));
        const double next = double(sum) + difference * difference;
        sum = next < beyond ? int64_t(next) : INT64_MAX;
    }
    return sum;
}

} // namespace

extern "C" int64_t vexa_avg_round(int64_t sum, int64_t count)
{
    if (count == 0)
        return 0;
    if (count == -1)
        return sum == INT64_MIN ? INT64_MAX : -sum; // the one quotient that does not fit
    if (count < 0)
        return (sum < 0 ? sum - count / 2 : sum + count / 2) / count;
    const uint64_t quotient = (magnitude(sum) + uint64_t(count) / 2) / uint64_t(count);
    return int64_t(sum < 0 ? 0 - quotient : quotient);
}

// Quotients and rests are added apart, so that the sum of large values does not wrap.
extern "C" uint64_t vexa_avg_array(const uint64_t *values, size_t count)
{
    uint64_t quotient = 0;
    uint64_t rest = 0;
    for (size_t i = 0; i < count; i++) {
        quotient += values[i] / count;
        rest += values[i] % count;
    }
    return count == 0 ? 0 : quotient + (rest + count / 2) / count;
}

extern "C" int32_t vexa_avg_compute(vexa_avg *avg, int32_t def)
{
    const int64_t mean = avg->count > 0 ? vexa_avg_round(avg->sum, avg->count) : def;
    avg->average = int32_t(std::clamp<int64_t>(mean, INT32_MIN, INT32_MAX));
    return avg->average;
}

extern "C" void vexa_avg_increment(vexa_avg *avg, vexa_avg_pair pair)
{
    avg->sum = saturating_add(avg->sum, pair.sum);
    avg->count = saturating_add(avg->count, pair.count);
}

extern "C" void vexa_avg_increment_sum_weighted(vexa_avg *avg, int32_t value, int32_t weight)
{
    if (value != -1)
        vexa_avg_increment(avg, {int64_t{value} * weight, weight});
}

extern "C" int vexa_remove_outliers(int64_t *values, int64_t *mean, size_t *count)
{
    const size_t all = *count;
    if (all == 0)
        return -1;
    *mean = mean_of(values, all);
    const uint64_t deviation = square_root(uint64_t(squares_around(*mean, values, all)) / all);
    if (deviation == 0)
        return 0;
    // the largest distance of which a hundred times, divided by the deviation, is still 300 and a fraction
    const uint64_t farthest = (301 * deviation - 1) / 100;
    const int64_t *kept =
        std::remove_if(values, values + all, [&](int64_t v) { return distance(v, *mean) > farthest; });
    *count = size_t(kept - values);
    return 0;
}
