#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "tessera/platform/base/Types.h"

namespace Tool {

/// Country calling codes with the same number of digits that follow one another.
struct CodeRun {
    int first;
    int last;
};

/// The country calling codes in use (ITU-T E.164), shared and network codes included. No code begins
/// another, so the first that a number begins with is its own.
inline constexpr std::array<CodeRun, 48> countryCodes = {{
    {1, 1},     {7, 7},     {20, 20},   {27, 27},   {30, 34},   {36, 36},   {39, 41},   {43, 49},
    {51, 58},   {60, 66},   {81, 82},   {84, 84},   {86, 86},   {90, 95},   {98, 98},   {211, 213},
    {216, 216}, {218, 218}, {220, 258}, {260, 269}, {290, 291}, {297, 299}, {350, 359}, {370, 383},
    {385, 387}, {389, 389}, {420, 421}, {423, 423}, {500, 509}, {590, 599}, {670, 670}, {672, 683},
    {685, 692}, {800, 800}, {808, 808}, {850, 850}, {852, 853}, {855, 856}, {870, 870}, {878, 878},
    {880, 883}, {886, 886}, {888, 888}, {960, 968}, {970, 977}, {979, 979}, {992, 996}, {998, 998},
}};

/// How many digits the country calling code at the front takes; 0 when it begins with none.
constexpr std::size_t countryCodeLength(WStringView digits) {
    int code = 0;
    for (std::size_t length = 1; length <= 3 && length <= digits.size(); ++length) {
        const WCHAR digit = digits[length - 1];
        if (digit < u'0' || digit > u'9') return 0;
        code = code * 10 + (digit - u'0');
        const bool known = std::any_of(countryCodes.begin(), countryCodes.end(),
                                       [code](const CodeRun& run) { return run.first <= code && code <= run.last; });
        if (known && digits.front() != u'0') return length;
    }
    return 0;
}

static_assert(countryCodeLength(TEXT("821012345678")) == 2);
static_assert(countryCodeLength(TEXT("12125550123")) == 1);
static_assert(countryCodeLength(TEXT("4232370000")) == 3);
static_assert(countryCodeLength(TEXT("0101")) == 0);

}  // namespace Tool
