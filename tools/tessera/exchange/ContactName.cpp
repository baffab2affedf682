#include "ContactName.h"

namespace Tool {

void ContactName::takeWhole(const std::u16string& name) {
    if (isBlank(whole_)) {
        whole_ = name;
    } else {
        hasSeveral_ = hasSeveral_ || (!isBlank(name) && name != whole_);
    }
}

void ContactName::takeParts(std::vector<std::u16string> parts) {
    parts.resize(5);
    parts_ = {parts[0], parts[1], parts[2], parts[3], parts[4]};
}

void ContactName::takeOrganisation(const std::vector<std::u16string>& parts) {
    for (const std::u16string& part : parts) {
        if (isBlank(part)) continue;
        if (!organisation_.empty()) organisation_ += u' ';
        organisation_ += part;
    }
}

void ContactName::takeNickname(const std::u16string& name) {
    nickname_ = name;
}

void ContactName::takeUnreadable(const std::string& problem) {
    if (problem_.empty()) problem_ = problem;
}

void ContactName::putInto(ContactDraft& draft) const {
    const std::u16string joined = parts_.whole();
    for (const std::u16string* candidate : {&whole_, &joined, &organisation_, &nickname_}) {
        if (!draft.has(PhoneBook::PBDBATTR_NAME)) draft.put(PhoneBook::PBDBATTR_NAME, *candidate);
    }
    const std::u16string_view name = draft.record.strName.view();
    const auto isKept = [name](const std::u16string& text) {
        return isBlank(text) || name.find(text) != std::u16string_view::npos;
    };
    const bool partsAreKept = isKept(parts_.family) && isKept(parts_.given) && isKept(parts_.middle) &&
                              isKept(parts_.prefix) && isKept(parts_.suffix);
    if (!partsAreKept) draft.remark("its name in parts, " + quoted(joined) + ", has no place and is left out");
    if (!isKept(organisation_)) draft.leftOut.insert("organisation");
    if (hasSeveral_) draft.leftOut.insert("further name");
    if (!isKept(nickname_)) draft.leftOut.insert("nickname");
    const bool isNameless = isBlank(whole_) && isBlank(joined);
    if (isNameless && !problem_.empty()) draft.problem = "its name " + problem_;
}

}  // namespace Tool
