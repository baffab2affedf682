#pragma once

#include <string>

#include "../Records.h"

namespace Tool {

/// The headings, behind a byte-order mark without which spreadsheets take UTF-8 for something else.
std::string csvHeader();

/// A contact as a row, its texts being well-formed.
std::string csvRowOf(const Contact& contact);

}  // namespace Tool
