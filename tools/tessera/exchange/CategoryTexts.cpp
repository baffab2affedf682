#include "CategoryTexts.h"

#include "tessera/common/CommaSepValList.h"

namespace Tool {

CString asCategory(const CString& group) {
    CString category = group;
    category.Replace(u';', u',');
    return category;
}

std::vector<WString> categoriesIn(const CString& text) {
    CStringArray items;
    common::CommaSepValList(text).getList(items);
    std::vector<WString> categories;
    for (const CString& item : items)
        if (!isBlank(item.view())) categories.emplace_back(item.view());
    return categories;
}

WString joinedCategories(const std::vector<WString>& categories) {
    WString text;
    for (const WString& category : categories) {
        const bool holdsComma = category.find(u',') != WString::npos;
        if (!text.empty()) text += TEXT(", ");
        text += holdsComma ? TEXT("\"") + category + TEXT("\"") : category;
    }
    return text;
}

void putCategories(ContactDraft& draft, const std::vector<WString>& categories, const std::optional<WString>& group,
                   const std::optional<WString>& text) {
    const WString first = categories.empty() ? WString() : categories.front();
    draft.put(PhoneBook::PBDBATTR_GROUP, group.value_or(first));
    const CString ofGroup = asCategory(draft.record.strGroup);
    if (categories.empty() && !text) return;
    const WString all = text.value_or(joinedCategories(categories));
    if (all == ofGroup.view()) return;  // comes with the group
    draft.record.strCategories = isBlank(all) ? CString() : CString(all);
    draft.record.dwCITypeMask |= PhoneBook::aPBAttribute_[PhoneBook::PBDBATTR_CATEGORIES].mask;
}

}  // namespace Tool
