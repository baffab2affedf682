#include "NearestWord.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace Tool {

namespace {

/// How many letters have to be put in, taken out, replaced, or swapped with the next one.
std::size_t slipsBetween(std::string_view typed, std::string_view word) {
    std::vector<std::size_t> beforeLast(word.size() + 1);
    std::vector<std::size_t> last(word.size() + 1);
    std::vector<std::size_t> now(word.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= typed.size(); ++i) {
        now[0] = i;
        for (std::size_t j = 1; j <= word.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (typed[i - 1] == word[j - 1] ? 0 : 1);
            now[j] = std::min({replaced, last[j] + 1, now[j - 1] + 1});
            const bool isSwapped = i > 1 && j > 1 && typed[i - 1] == word[j - 2] && typed[i - 2] == word[j - 1];
            if (isSwapped) now[j] = std::min(now[j], beforeLast[j - 2] + 1);
        }
        beforeLast.swap(last);
        last.swap(now);
    }
    return last.back();
}

}  // namespace

std::string nearestWord(std::string_view typed, const std::vector<std::string>& words) {
    std::string nearest;
    std::size_t fewest = typed.size() + 1;
    for (const std::string& word : words) {
        const std::size_t slips = slipsBetween(typed, word);
        if (slips >= fewest || slips * 2 > word.size()) continue;
        fewest = slips;
        nearest = word;
    }
    return nearest;
}

}  // namespace Tool
