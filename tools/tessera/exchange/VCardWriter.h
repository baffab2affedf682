#pragma once

#include <string>

#include "../Records.h"
#include "VCardProperty.h"

namespace Tool {

/// A contact as a card, its texts being well-formed. What cards have no property for is in some of our own.
std::string vcardOf(const Contact& contact, VCardVersion version);

}  // namespace Tool
