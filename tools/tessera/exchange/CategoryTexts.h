#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ContactDraft.h"

namespace Tool {

/// A group as the phone book writes it into the categories.
CString asCategory(const CString& group);

/// The categories of a contact one by one.
std::vector<std::u16string> categoriesIn(const CString& text);
/// The same back in one text.
std::u16string joinedCategories(const std::vector<std::u16string>& categories);

/// Gives the contact the first category as its group, and all of them as categories. Where `group` or `text` is given,
/// that is the group, or the whole text of the categories, instead.
void putCategories(ContactDraft& draft, const std::vector<std::u16string>& categories,
                   const std::optional<std::u16string>& group, const std::optional<std::u16string>& text);

}  // namespace Tool
