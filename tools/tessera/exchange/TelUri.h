#pragma once

#include <string>
#include <string_view>

#include "ContactDraft.h"

namespace Tool {

/// The number in what a file has for one: as it is, or out of a "tel:" address; empty for other addresses. What does
/// not go with it becomes a remark.
std::u16string telephoneNumberOf(std::u16string_view value, ContactDraft& draft);

}  // namespace Tool
