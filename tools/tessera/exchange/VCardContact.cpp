#include "VCardContact.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <optional>
#include <utility>

#include "../Failure.h"
#include "CategoryTexts.h"
#include "ContactName.h"
#include "NumberPlaces.h"
#include "OwnProperties.h"
#include "PlainText.h"
#include "TelUri.h"

namespace Tool {

namespace {

/// Properties that say nothing of a person.
constexpr std::array<std::string_view, 13> bookkeeping = {"VERSION",
                                                          "PRODID",
                                                          "REV",
                                                          "UID",
                                                          "NAME",
                                                          "SOURCE",
                                                          "CLASS",
                                                          "PROFILE",
                                                          "MAILER",
                                                          "CLIENTPIDMAP",
                                                          "KIND",
                                                          "X-ABUID",
                                                          "X-ADDRESSBOOKSERVER-KIND"};

struct PropertyLabel {
    std::string_view name;
    const char* label;
};

constexpr std::array<PropertyLabel, 12> labels = {{{"FN", "name"},
                                                   {"N", "name in parts"},
                                                   {"ADR", "address"},
                                                   {"TITLE", "title"},
                                                   {"ROLE", "role"},
                                                   {"ORG", "organisation"},
                                                   {"URL", "web page"},
                                                   {"NICKNAME", "nickname"},
                                                   {"PHOTO", "picture"},
                                                   {"LOGO", "logo"},
                                                   {"SOUND", "sound"},
                                                   {"AGENT", "agent"}}};

std::string labelOf(const std::string& name) {
    const auto* known =
        std::find_if(labels.begin(), labels.end(), [&](const PropertyLabel& each) { return each.name == name; });
    return known == labels.end() ? name : known->label;
}

bool isBookkeeping(const std::string& name) {
    return std::find(bookkeeping.begin(), bookkeeping.end(), name) != bookkeeping.end();
}

/// What stands for nothing, such as the parts of an address of which there is none.
bool saysNothing(std::string_view value) {
    return value.find_first_not_of("; \t") == std::string_view::npos;
}

bool isListOfCards(const VCardProperty& property) {
    return (property.name == "KIND" || property.name == "X-ADDRESSBOOKSERVER-KIND") &&
           upperCase(property.value) == "GROUP";
}

/// "_$!<Mobile>!$_", as some programs wrap the labels that they know.
WString plainLabel(WStringView label) {
    const std::size_t open = label.find(u'<');
    const std::size_t close = label.rfind(u'>');
    const bool isWrapped = label.starts_with(TEXT("_$!")) && open != label.npos && close != label.npos && open < close;
    return WString(isWrapped ? label.substr(open + 1, close - open - 1) : label);
}

int preferenceOf(const VCardProperty& property) {
    if (property.types().contains("PREF")) return 1;
    const std::string_view said = property.parameter("PREF");
    int preference = FoundNumber::notPreferred;
    std::from_chars(said.data(), said.data() + said.size(), preference);
    return std::clamp(preference, 1, FoundNumber::notPreferred);
}

struct FoundEmail {
    WString address;
    int preference;
    bool isLabelled;
};

/// One card on its way to a draft.
class Reading {
public:
    Reading(const VCard& card, const FileEncoding& fileEncoding, ContactDraft& draft)
        : card_(card), fileEncoding_(fileEncoding), draft_(draft) {}

    void read() {
        readLabels();
        for (const VCardProperty& property : card_.properties)
            take(property);
        name_.putInto(draft_);
        putEmail();
        placeNumbers(draft_, std::move(numbers_));
        draft_.put(PhoneBook::PBDBATTR_BODY, notes_);
        putCategories(draft_, categories_, own_.group, own_.categories);
        tellWhatIsLeftOut();
    }

private:
    using Taker = void (Reading::*)(const VCardProperty&);
    struct Entry {
        std::string_view name;
        Taker taker;
    };

    void take(const VCardProperty& property) {
        static constexpr std::array<Entry, 10> entries = {{{"FN", &Reading::takeWholeName},
                                                           {"N", &Reading::takeName},
                                                           {"ORG", &Reading::takeOrganisation},
                                                           {"NICKNAME", &Reading::takeNickname},
                                                           {"TEL", &Reading::takeNumber},
                                                           {"EMAIL", &Reading::takeEmail},
                                                           {"BDAY", &Reading::takeBirthday},
                                                           {"NOTE", &Reading::takeNotes},
                                                           {"CATEGORIES", &Reading::takeCategories},
                                                           {"X-ABLABEL", &Reading::passOver}}};
        if (isListOfCards(property)) draft_.problem = "it is a list of contacts, not one";
        // An empty one of our own says that there is none.
        if (isOwnProperty(property.name))
            return takeOwnProperty(property.name, text(property).value_or(TEXT("")), draft_, own_);
        if (isBookkeeping(property.name) || saysNothing(property.value)) return;
        const auto* entry =
            std::find_if(entries.begin(), entries.end(), [&](const Entry& each) { return each.name == property.name; });
        if (entry != entries.end()) return (this->*entry->taker)(property);
        draft_.leftOut.insert(labelOf(property.name));
    }

    /// The text with its escapes; nothing, and a remark, when it cannot be read.
    std::optional<WString> rawText(const VCardProperty& property) {
        VCardText read = textOf(property, fileEncoding_);
        if (read.problem.empty()) return std::move(read.text);
        if (property.name == "FN" || property.name == "N") name_.takeUnreadable(read.problem);
        draft_.remark("its " + labelOf(property.name) + " " + read.problem + " and is left out");
        return std::nullopt;
    }
    std::optional<WString> text(const VCardProperty& property) {
        const auto raw = rawText(property);
        return raw ? std::optional(unescaped(*raw, card_.version)) : std::nullopt;
    }
    std::vector<WString> parts(const VCardProperty& property, WCHAR separator) {
        const auto raw = rawText(property);
        return raw ? partsOf(*raw, separator, card_.version) : std::vector<WString>();
    }

    void passOver(const VCardProperty& /*property*/) {}
    void takeWholeName(const VCardProperty& property) { name_.takeWhole(text(property).value_or(TEXT(""))); }
    void takeOrganisation(const VCardProperty& property) { name_.takeOrganisation(parts(property, u';')); }
    void takeNickname(const VCardProperty& property) { name_.takeNickname(text(property).value_or(TEXT(""))); }

    void takeName(const VCardProperty& property) {
        const auto raw = rawText(property);
        if (!raw) return;
        std::vector<WString> parts = rawPartsOf(*raw, u';', card_.version);
        // Since version 3.0 a part may be a list. What has no parts is no list either: "Kim, Anna" is one name.
        const bool hasLists = card_.version != VCardVersion::v21 && parts.size() > 1;
        for (WString& part : parts)
            part = hasLists ? namesIn(part) : WString(trimmed(unescaped(part, card_.version)));
        parts.resize(5);
        name_.takeParts({parts[0], parts[1], parts[2], parts[3], parts[4]});
    }

    WString namesIn(const WString& list) const {
        WString names;
        for (const WString& each : partsOf(list, u',', card_.version)) {
            if (isBlank(each)) continue;
            if (!names.empty()) names += u' ';
            names += trimmed(each);
        }
        return names;
    }

    void takeNotes(const VCardProperty& property) {
        const auto more = text(property);
        if (!more) return;
        if (!notes_.empty()) notes_ += u'\n';
        notes_ += *more;
    }

    void takeCategories(const VCardProperty& property) {
        for (WString& each : parts(property, u',')) {
            if (!isBlank(each)) categories_.push_back(std::move(each));
        }
    }

    void takeBirthday(const VCardProperty& property) {
        const auto day = text(property);
        if (!day) return;
        const bool yearIsMadeUp =
            std::any_of(property.parameters.begin(), property.parameters.end(),
                        [](const auto& parameter) { return parameter.name.ends_with("-OMIT-YEAR"); });
        if (yearIsMadeUp) return draft_.remark("its birthday " + quoted(*day) + " has no year and is left out");
        draft_.putBirthday(*day);
    }

    void takeNumber(const VCardProperty& property) {
        const auto value = text(property);
        if (!value) return;
        numbers_.push_back({kindOf(property), telephoneNumberOf(*value, draft_), preferenceOf(property)});
    }

    NumberKind kindOf(const VCardProperty& property) const {
        WString words;
        for (const std::string& type : property.types())
            words += TEXT(" ") + WString(type.begin(), type.end());
        const auto label = groupLabels_.find(property.group);
        if (label != groupLabels_.end()) words += TEXT(" ") + label->second;
        return numberKindOf(words).value_or(NumberKind::other);
    }

    void takeEmail(const VCardProperty& property) {
        const auto address = text(property);
        if (address) emails_.push_back({*address, preferenceOf(property), isLabelled(property)});
    }

    /// Whether the card says which of somebody's addresses that is, as no contact does.
    bool isLabelled(const VCardProperty& property) const {
        const auto types = property.types();
        const auto label = groupLabels_.find(property.group);
        return types.contains("HOME") || types.contains("WORK") ||
               (label != groupLabels_.end() && !isBlank(label->second));
    }

    /// A label belongs to the property that has the same group.
    void readLabels() {
        for (const VCardProperty& property : card_.properties) {
            if (property.name != "X-ABLABEL" || property.group.empty()) continue;
            groupLabels_[property.group] = plainLabel(unescaped(textOf(property, fileEncoding_).text, card_.version));
        }
    }

    void putEmail() {
        std::stable_sort(emails_.begin(), emails_.end(),
                         [](const auto& left, const auto& right) { return left.preference < right.preference; });
        for (const auto& [address, preference, isLabelled] : emails_) {
            draft_.putEmail(address);
            if (isLabelled && draft_.record.strEmail1Address.view() == address) draft_.leftOut.insert(emailLabelText);
        }
    }

    void tellWhatIsLeftOut() {
        for (const std::string& nested : card_.nested)
            draft_.leftOut.insert(labelOf(nested));
        for (const int line : card_.unreadableLines)
            draft_.remark("line " + std::to_string(line) + " is no line of a card and is left out");
    }

    const VCard& card_;
    const FileEncoding& fileEncoding_;
    ContactDraft& draft_;
    std::map<std::string, WString> groupLabels_;
    ContactName name_;
    WString notes_;
    std::vector<WString> categories_;
    std::vector<FoundNumber> numbers_;
    std::vector<FoundEmail> emails_;
    OwnFields own_;
};

}  // namespace

ContactDraft draftOfVCard(const VCard& card, const FileEncoding& fileEncoding) {
    ContactDraft draft;
    draft.number = card.number;
    draft.line = card.line;
    if (card.problem.empty()) {
        Reading(card, fileEncoding, draft).read();
    } else {
        draft.problem = card.problem;
    }
    if (draft.problem.empty() && draft.record.dwCITypeMask == 0) draft.problem = "it says nothing of anybody";
    return draft;
}

DraftedFile draftsOfVCards(const SourceText& source) {
    DraftedFile file;
    file.units = "cards";
    const FileEncoding encoding{source.encoding(), source.isEncodingSaid()};
    VCardReader reader(source.bytes());
    VCard card;
    while (reader.next(card))
        file.drafts.push_back(draftOfVCard(card, encoding));
    if (file.drafts.empty()) throw Failure(source.path() + ": holds no card: no line of it is BEGIN:VCARD");
    for (const StrayLines& stray : reader.stray()) {
        const bool isOne = stray.first == stray.last;
        file.remarks.push_back((isOne ? "line " : "lines ") + std::to_string(stray.first) +
                               (isOne ? " is" : " to " + std::to_string(stray.last) + " are") +
                               " outside of a card and left out");
    }
    return file;
}

}  // namespace Tool
