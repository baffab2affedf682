#pragma once

#include <ostream>

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Unicode.h"

// How the platform's values show in a failed test.

inline std::ostream& operator<<(std::ostream& out, const CString& text) {
    return out << '"' << utf8Of(text.view()) << '"';
}
