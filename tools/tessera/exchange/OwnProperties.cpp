#include "OwnProperties.h"

#include <algorithm>

#include "../Arguments.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

/// Null when there is none of this name.
const OwnProperty* propertyNamed(std::string_view name) {
    const auto* known = std::find_if(ownProperties.begin(), ownProperties.end(),
                                     [name](const OwnProperty& each) { return each.name == name; });
    return known == ownProperties.end() ? nullptr : known;
}

}  // namespace

bool isOwnProperty(std::string_view name) {
    return name == ownGroup || name == ownCategories || propertyNamed(name) != nullptr;
}

void takeOwnProperty(std::string_view name, const WString& text, ContactDraft& draft, OwnFields& fields) {
    if (name == ownGroup) fields.group = text;
    if (name == ownCategories) fields.categories = text;
    if (const OwnProperty* known = propertyNamed(name); known != nullptr) putText(draft, known->field, text);
}

void putText(ContactDraft& draft, PhoneBook::PBDBAttrID field, WStringView text) {
    const PhoneBook::PBAttribute& attribute = PhoneBook::aPBAttribute_[static_cast<std::size_t>(field)];
    if (attribute.number == nullptr || isBlank(text)) return draft.put(field, text);
    const auto number = numberOf(utf8Of(text));
    if (number) return draft.put(field, *number);
    draft.remark(quoted(text) + " is no whole number of 32 bits and is left out");
}

}  // namespace Tool
