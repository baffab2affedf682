#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "tessera/phonebook/model/SpeedDialInfo.h"

namespace Tool {

/// All slots as lines that fit into that many columns, each with its number and what is in it; the first entry is
/// slot 1. A slot without a known name shows its telephone number.
std::string slotGrid(std::span<const PhoneBook::SpeedDialInfo> slots, std::size_t width);

}  // namespace Tool
