#pragma once

#include <string>
#include <string_view>

#include "tessera/platform/port/Character.h"

// The encodings that ICU, or a system with converters of its own, can read.

namespace Tool::port {

/// What has become of bytes that were read in an encoding.
struct Decoded {
    WString text;  ///< Up to the first bytes that mean nothing.
    bool whole = false;
};

bool hasConverter(const std::string& encoding);

/// A byte-order mark is a character like others. Nothing at all where there is no such converter.
Decoded convert(std::string_view bytes, const std::string& encoding);

/// The likeliest encoding by statistics; empty when there is none, or the system has no statistics.
std::string likeliestEncoding(std::string_view bytes);

}  // namespace Tool::port
