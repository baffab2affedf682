#pragma once

#include <optional>
#include <vector>

#include "ContactDraft.h"
#include "tessera/platform/base/Types.h"

namespace Tool {

/// A group as the phone book writes it into the categories.
CString asCategory(const CString& group);

/// The categories of a contact one by one.
std::vector<WString> categoriesIn(const CString& text);
/// The same back in one text.
WString joinedCategories(const std::vector<WString>& categories);

/// Gives the contact the first category as its group, and all of them as categories. Where `group` or `text` is given,
/// that is the group, or the whole text of the categories, instead.
void putCategories(ContactDraft& draft, const std::vector<WString>& categories, const std::optional<WString>& group,
                   const std::optional<WString>& text);

}  // namespace Tool
