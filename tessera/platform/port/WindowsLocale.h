#pragma once

#include <string>

#include "tessera/platform/port/Character.h"

namespace Platform::port {

/// The ICU name of a locale: "de_DE" of "de-DE". What orders texts in another manner than the locale's usual one, as
/// "de-DE_phoneb" does, has no part in it.
std::string icuNameOf(WStringView systemName);

}  // namespace Platform::port
