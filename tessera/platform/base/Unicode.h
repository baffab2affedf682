#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"

/// @file
/// UTF-8 is spoken at the edges only: the command line, JSON, file names.

/// UTF-16 to UTF-8; a lone surrogate becomes U+FFFD.
TESSERA_API std::string utf8Of(WStringView text);

/// UTF-8 to UTF-16; nothing when the bytes are not well-formed UTF-8.
TESSERA_API std::optional<CString> textOfUtf8(std::string_view bytes);
