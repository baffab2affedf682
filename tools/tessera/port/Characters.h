#pragma once

#include "tessera/platform/port/Character.h"

// What ICU, or a system with such functions of its own, knows of characters.

namespace Tool::port {

bool isLetterOrDigit(WCHAR unit);
WCHAR lowerCase(WCHAR unit);

/// Whether the text begins with a character of Hangul, Han or Kana. It is not empty.
bool beginsEastAsian(WStringView text);

}  // namespace Tool::port
