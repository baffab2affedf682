#include "ContactName.h"

#include <algorithm>

namespace Tool {

namespace {

/// Whether every word of the text stands in the name, whatever stands between them there.
bool hasWordsOf(std::u16string_view name, std::u16string_view text) {
    while (!isBlank(text)) {
        text.remove_prefix(text.find_first_not_of(u' '));
        const std::u16string_view word = text.substr(0, text.find(u' '));
        if (name.find(word) == std::u16string_view::npos) return false;
        text.remove_prefix(word.size());
    }
    return true;
}

}  // namespace

void ContactName::takeWhole(const std::u16string& name) {
    if (isBlank(whole_)) {
        whole_ = name;
    } else {
        hasSeveral_ = hasSeveral_ || (!isBlank(name) && name != whole_);
    }
}

void ContactName::takeParts(const PersonName& parts) {
    const std::u16string known = parts_.whole();
    const std::u16string other = parts.whole();
    if (isBlank(known)) {
        parts_ = parts;
    } else {
        hasSeveral_ = hasSeveral_ || (!isBlank(other) && other != known);
    }
}

void ContactName::takeOrganisation(const std::vector<std::u16string>& parts) {
    for (const std::u16string& part : parts) {
        if (isBlank(part)) continue;
        if (!organisation_.empty()) organisation_ += u' ';
        organisation_ += part;
    }
}

void ContactName::takeNickname(const std::u16string& name) {
    if (!isBlank(name)) nicknames_.push_back(name);
}

void ContactName::takeUnreadable(const std::string& problem) {
    if (problem_.empty()) problem_ = problem;
}

void ContactName::putInto(ContactDraft& draft) const {
    const std::u16string joined = parts_.whole();
    const std::u16string nickname = nicknames_.empty() ? std::u16string() : nicknames_.front();
    for (const std::u16string* candidate : {&whole_, &joined, &organisation_, &nickname}) {
        if (!draft.has(PhoneBook::PBDBATTR_NAME)) draft.put(PhoneBook::PBDBATTR_NAME, *candidate);
    }
    const std::u16string_view name = draft.record.strName.view();
    const auto isKept = [name](const std::u16string& text) {
        return isBlank(text) || name.find(text) != std::u16string_view::npos;
    };
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
