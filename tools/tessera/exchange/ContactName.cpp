#include "ContactName.h"

#include <algorithm>

namespace Tool {

namespace {

/// Whether every word of the text stands in the name, whatever stands between them there.
bool hasWordsOf(WStringView name, WStringView text) {
    while (!isBlank(text)) {
        text.remove_prefix(text.find_first_not_of(u' '));
        const WStringView word = text.substr(0, text.find(u' '));
        if (name.find(word) == WStringView::npos) return false;
        text.remove_prefix(word.size());
    }
    return true;
}

}  // namespace

void ContactName::takeWhole(const WString& name) {
    if (isBlank(whole_)) {
        whole_ = name;
    } else {
        hasSeveral_ = hasSeveral_ || (!isBlank(name) && name != whole_);
    }
}

void ContactName::takeParts(const PersonName& parts) {
    const WString known = parts_.whole();
    const WString other = parts.whole();
    if (isBlank(known)) {
        parts_ = parts;
    } else {
        hasSeveral_ = hasSeveral_ || (!isBlank(other) && other != known);
    }
}

void ContactName::takeOrganisation(const std::vector<WString>& parts) {
    for (const WString& part : parts) {
        if (isBlank(part)) continue;
        if (!organisation_.empty()) organisation_ += u' ';
        organisation_ += part;
    }
}

void ContactName::takeNickname(const WString& name) {
    if (!isBlank(name)) nicknames_.push_back(name);
}

void ContactName::takeUnreadable(const std::string& problem) {
    if (problem_.empty()) problem_ = problem;
}

void ContactName::putInto(ContactDraft& draft) const {
    const WString joined = parts_.whole();
    const WString nickname = nicknames_.empty() ? WString() : nicknames_.front();
    for (const WString* candidate : {&whole_, &joined, &organisation_, &nickname}) {
        if (!draft.has(PhoneBook::PBDBATTR_NAME)) draft.put(PhoneBook::PBDBATTR_NAME, *candidate);
    }
    const WStringView name = draft.record.strName.view();
    const auto isKept = [name](const WString& text) { return isBlank(text) || name.find(text) != WStringView::npos; };
    const auto parts = {parts_.family, parts_.given, parts_.middle, parts_.prefix, parts_.suffix};
    const bool partsAreKept =
        std::all_of(parts.begin(), parts.end(), [name](const auto& part) { return hasWordsOf(name, part); });
    if (!partsAreKept) draft.remark("its name in parts, " + quoted(joined) + ", has no place and is left out");
    if (!isKept(organisation_)) draft.leftOut.insert("organisation");
    if (hasSeveral_) draft.leftOut.insert("further name");
    if (!std::all_of(nicknames_.begin(), nicknames_.end(), isKept)) draft.leftOut.insert("nickname");
    const bool isNameless = isBlank(whole_) && isBlank(joined);
    if (isNameless && !problem_.empty()) draft.problem = "its name " + problem_;
}

}  // namespace Tool
