#pragma once

#include "tessera/platform/base/Types.h"

namespace Tool {

/// A birthday as a file has it, or what is wrong with it.
struct ReadBirthday {
    DATE day = 0;
    const char* problem = nullptr;  ///< Goes on a sentence about the birthday; null when there is none.
};

/// Reads 19900305 and 1990-03-05, a time of day behind it or not, and what the user's locale writes. A day that has
/// no year ("--0305") has a problem.
ReadBirthday readBirthday(WStringView text);

}  // namespace Tool
