#pragma once

#include "ContactDraft.h"
#include "tessera/platform/base/Types.h"

namespace Tool {

/// The number in what a file has for one: as it is, or out of a "tel:" address; empty for other addresses. What does
/// not go with it becomes a remark.
WString telephoneNumberOf(WStringView value, ContactDraft& draft);

}  // namespace Tool
