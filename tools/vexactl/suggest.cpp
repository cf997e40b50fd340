// SPDX-License-Identifier: MIT
#include "suggest.h"

#include <algorithm>

namespace {

// insertions, deletions, replacements and swaps of neighbours that turn one word into the other
size_t distance(std::string_view a, std::string_view b)
{
    std::vector<std::vector<size_t>> d(a.size() + 1, std::vector<size_t>(b.size() + 1));
    for (size_t i = 0; i <= a.size(); i++)
        for (size_t j = 0; j <= b.size(); j++) {
            if (i == 0 || j == 0) {
                d[i][j] = i + j;
                continue;
            }
            const size_t replaced = d[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            d[i][j] = std::min({replaced, d[i - 1][j] + 1, d[i][j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    return d[a.size()][b.size()];
}

} // namespace

std::string did_you_mean(std::string_view word, const std::vector<std::string> &words, const std::string &prefix)
{
    constexpr size_t longest_word = 32; // beyond it nothing is near
    if (word.size() > longest_word)
        return "";
    const std::string *best = nullptr;
    size_t best_distance = 3;
    for (const std::string &candidate : words) {
        const size_t d = distance(word, candidate);
        if (d < best_distance && d * 2 <= candidate.size()) {
            best = &candidate;
            best_distance = d;
        }
    }
    return best ? "; did you mean '" + prefix + *best + "'?" : "";
}

std::string joined(const std::vector<std::string> &words)
{
    std::string out;
    for (const std::string &word : words)
        out += (out.empty() ? "" : ", ") + word;
    return out;
}
