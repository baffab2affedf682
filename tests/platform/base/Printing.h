#pragma once

#include <ostream>

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Unicode.h"

/// How a test that fails shows a text.
inline void PrintTo(const CString& text, std::ostream* out) {
    *out << '"' << utf8Of(text.view()) << '"';
}
