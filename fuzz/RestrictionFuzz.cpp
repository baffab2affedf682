// Restrictions. The input begins with lines "Field=value", which make a contact, up to an empty line; the rest
// is the text of a restriction.

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/FuzzedInput.h"
#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/contacts/PackedValues.h"
#include "tessera/platform/contacts/Restriction.h"
#include "tessera/platform/engine/Record.h"

using fuzz::require;
using Platform::ContactField;
using Platform::Restriction;

namespace {

using Fields = std::map<ContactField, std::u16string>;

/// The date as ticks since the beginning of 1601; -1 for one before. Nothing for what is no date.
std::optional<std::int64_t> ticksOfText(const std::u16string& text) {
    COleDateTime date;
    if (date.ParseDateTime(text.c_str()) == FALSE) return std::nullopt;
    FILETIME time;
    return fileTimeOfDate(date.date(), time) != FALSE ? static_cast<std::int64_t>(ticksOf(time)) : -1;
}

std::u16string upper(const std::u16string& text) {
    CString raised(text);
    raised.MakeUpper();
    return std::u16string(raised.view());
}

/// A restriction read without recursion: a stack holds, for each open parenthesis, what its group has come to.
class PlainReading {
public:
    PlainReading(std::u16string_view text, const Fields& contact) : rest_(text), contact_(contact) {}

    /// Whether the contact is let through; nothing for a malformed text.
    std::optional<bool> outcome() {
        for (bool wantsTerm = true;; wantsTerm = !wantsTerm) {
            if (wantsTerm) {
                while (token(u"(")) {
                    groups_.push_back({});
                    if (groups_.size() > Restriction::maxNesting + 1) return std::nullopt;
                }
                const std::optional<bool> value = comparison();
                if (!value) return std::nullopt;
                join(*value);
            } else {
                while (groups_.size() > 1 && token(u")")) {
                    const bool value = groups_.back().value;
                    groups_.pop_back();
                    join(value);
                }
                skipBlanks();
                if (rest_.empty()) return groups_.size() == 1 ? std::optional(groups_.back().value) : std::nullopt;
                groups_.back().conjunction = token(u"AND");
                if (!groups_.back().conjunction && !token(u"OR")) return std::nullopt;
            }
        }
    }

private:
    struct Group {
        bool value = false;
        bool conjunction = false;
    };

    void join(bool value) {
        Group& group = groups_.back();
        group.value = group.conjunction ? group.value && value : group.value || value;
    }

    std::optional<bool> comparison() {
        const std::optional<std::u16string> name = enclosed(u"[", u']');
        if (!name) return std::nullopt;
        const auto definition = std::ranges::find_if(Platform::contactFields, [&](const auto& candidate) {
            return Platform::equalInAnyCase(candidate.name, *name);
        });
        if (definition == Platform::contactFields.end()) return std::nullopt;

        const bool less = token(u"<");
        const bool greater = token(u">", !less);
        const bool equal = !(less && greater) && token(u"=", !less && !greater);
        if (!less && !greater && !equal) return std::nullopt;
        const std::optional<std::u16string> value = enclosed(u"\"", u'"');
        if (!value) return std::nullopt;
        const auto order = compare(definition->field, *value);
        if (!order) return std::nullopt;
        if (!contact_.contains(definition->field)) return false;
        return (less && *order < 0) || (greater && *order > 0) || (equal && *order == 0);
    }

    /// Below, equal to or above 0 as the contact's value is to this one; 0 when it has none.
    std::optional<int> compare(ContactField field, const std::u16string& value) const {
        const auto own = contact_.find(field);
        if (field != ContactField::birthday) {
            return own == contact_.end() ? 0 : upper(own->second).compare(upper(value));
        }
        const std::optional<std::int64_t> day = ticksOfText(value);
        if (!day) return std::nullopt;
        if (own == contact_.end()) return 0;
        const std::int64_t ownDay = *ticksOfText(own->second);
        return ownDay < *day ? -1 : ownDay > *day ? 1 : 0;
    }

    std::optional<std::u16string> enclosed(std::u16string_view opening, WCHAR closing) {
        if (!token(opening)) return std::nullopt;
        std::u16string inside;
        for (; !rest_.empty() && rest_.front() != closing; rest_.remove_prefix(1))
            inside += rest_.front();
        if (rest_.empty()) return std::nullopt;
        rest_.remove_prefix(1);
        return inside;
    }

    /// Blanks may stand before a token, but not before the second character of an operator.
    bool token(std::u16string_view text, bool blanksBefore = true) {
        if (blanksBefore) skipBlanks();
        if (!Platform::equalInAnyCase(rest_.substr(0, text.size()), text)) return false;
        rest_.remove_prefix(text.size());
        return true;
    }

    void skipBlanks() {
        while (!rest_.empty() && std::u16string_view(u" \t\r\n").find(rest_.front()) != std::u16string_view::npos)
            rest_.remove_prefix(1);
    }

    std::u16string_view rest_;
    const Fields& contact_;
    std::vector<Group> groups_ = std::vector<Group>(1);
};

Fields readContact(fuzz::FuzzedInput& input) {
    Fields contact;
    while (!input.atEnd()) {
        const std::u16string line = input.line();
        if (line.empty()) break;
        const std::size_t end = std::min(line.find(u'='), line.size());
        const auto field = Platform::contactFieldNamed(std::u16string_view(line).substr(0, end));
        const std::u16string value = end == line.size() ? std::u16string() : line.substr(end + 1);
        if (!field) continue;
        if (field == ContactField::birthday && ticksOfText(value).value_or(-1) < 0) continue;
        contact[*field] = value;
    }
    return contact;
}

std::string packed(const Fields& contact) {
    std::string record;
    for (const auto& [field, value] : contact) {
        const std::string bytes =
            field == ContactField::birthday
                ? Platform::packedFileTime(fileTimeOf(static_cast<std::uint64_t>(*ticksOfText(value))))
                : std::string(Platform::packedText(value));
        const Platform::Edit edit{Platform::definitionOf(field).property, bytes, false};
        std::string longer;
        if (Platform::applyEdits(record, {&edit, 1}, longer) == ERROR_SUCCESS) record = longer;
    }
    return record;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzedInput input(data, size);
    const Fields contact = readContact(input);
    const std::string_view bytes = input.rest();
    const std::u16string text = fuzz::textOfBytes(bytes);

    const auto restriction = Restriction::parse(text);
    const std::optional<bool> expected = PlainReading(text, contact).outcome();
    require(restriction.has_value() == expected.has_value(), "a text is refused exactly when it is malformed");
    if (!restriction) return 0;

    require(restriction->matches(packed(contact)) == *expected, "a restriction means what a plain reading says");
    require(!restriction->matches({}), "a contact without any property is never let through");
    static_cast<void>(restriction->matches(bytes));  // a damaged record does no harm
    const auto enclosed = Restriction::parse(u"(" + text + u")");
    require(!enclosed || enclosed->matches(packed(contact)) == *expected, "parentheses around it all mean nothing");
    return 0;
}
