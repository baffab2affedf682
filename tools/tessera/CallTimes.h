#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tessera/platform/base/Types.h"

namespace Tool {

/// A time such as 2026-11-21T10:30, 2026-11-21 10:30:15, 2026-11-21T01:30Z or 2026-11-21T10:30+09:00, local unless it
/// says where; nothing for any other text, and for a time that the phone book cannot keep.
std::optional<FILETIME> timeOfIso(std::string_view text);

/// The time as 2026-11-21T01:30:00Z. Empty for one after the year 9999.
std::string isoTime(const FILETIME& time);

/// The time in the user's zone as the user's locale writes it. Empty as above.
std::string localText(const FILETIME& time);

/// 65 seconds as 1:05, an hour more as 1:01:05.
std::string durationText(DWORD seconds);

}  // namespace Tool
