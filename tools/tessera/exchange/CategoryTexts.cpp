#include "CategoryTexts.h"

#include "tessera/common/CommaSepValList.h"

namespace Tool {

CString asCategory(const CString& group) {
    CString category = group;
    category.Replace(u';', u',');
    return category;
}

std::vector<std::u16string> categoriesIn(const CString& text) {
    CStringArray items;
    common::CommaSepValList(text).getList(items);
    std::vector<std::u16string> categories;
    for (const CString& item : items)
        if (!isBlank(item.view())) categories.emplace_back(item.view());
    return categories;
}

std::u16string joinedCategories(const std::vector<std::u16string>& categories) {
    std::u16string text;
    for (const std::u16string& category : categories) {
        const bool holdsComma = category.find(u',') != std::u16string::npos;
        if (!text.empty()) text += u", ";
        text += holdsComma ? u'"' + category + u'"' : category;
    }
    return text;
}

void putCategories(ContactDraft& draft, const std::vector<std::u16string>& categories,
                   const std::optional<std::u16string>& group, const std::optional<std::u16string>& text) {
    const std::u16string first = categories.empty() ? std::u16string() : categories.front();
    draft.put(PhoneBook::PBDBATTR_GROUP, group.value_or(first));
    const CString ofGroup = asCategory(draft.record.strGroup);
    if (categories.empty() && !text) return;
    const std::u16string all = text.value_or(joinedCategories(categories));
    if (all == ofGroup.view()) return;  // comes with the group
    draft.record.strCategories = isBlank(all) ? CString() : CString(all);
    draft.record.dwCITypeMask |= PhoneBook::aPBAttribute_[PhoneBook::PBDBATTR_CATEGORIES].mask;
}

}  // namespace Tool
