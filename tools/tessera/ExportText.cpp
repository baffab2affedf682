#include "ExportText.h"

#include <cstdint>
#include <string_view>

#include "Failure.h"
#include "exchange/CategoryTexts.h"
#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using PhoneBook::PBAttribute;

constexpr std::u16string_view header =
    u"\uFEFFName,Group,Categories,Mobile,Home,Business,E-mail,Avatar,Photo,Bell,Birthday,Calling screen,Pager,Fax,"
    u"Notes,Private,Primary\n";

bool isWellFormed(std::u16string_view text) {
    const auto same = textOfUtf8(utf8Of(text));
    return same && same->view() == text && text.find(u'\0') == std::u16string_view::npos;
}

/// Why import would read another value than this text from a line; null when it would not.
const char* whyNotHeld(std::u16string_view text) {
    constexpr std::u16string_view split(u",\n\0", 3);
    constexpr std::u16string_view trimmedBehind = u"\" \t";
    constexpr std::u16string_view trimmedBefore = u" \"";
    if (text.find_first_of(split) != std::u16string_view::npos) return "holds a comma, a line feed or a zero character";
    if (text.empty()) return nullptr;
    if (trimmedBefore.find(text.front()) != std::u16string_view::npos) return "begins with a blank or a quote";
    if (trimmedBehind.find(text.back()) != std::u16string_view::npos) return "ends with a blank, a tab or a quote";
    return isWellFormed(text) ? nullptr : "is no well-formed text";
}

Failure cannotHold(const Contact& contact, const std::string& what) {
    return Failure("contact " + std::to_string(contact.oid) + " cannot be exported: " + what +
                   ", which the import format cannot hold (try --format vcard, or --json)");
}

std::u16string widened(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

std::u16string dateText(const Contact& contact, DATE date) {
    const std::string text = isoDate(date);
    COleDateTime day;
    if (!day.ParseDateTime(CString(widened(text))) || day.date() != date)
        throw cannotHold(contact, "its birthday is not just a day");
    return widened(text);
}

/// Import makes no more of the categories than the group, and keeps no notes.
void requireKeptByImport(const Contact& contact, const Field& field) {
    const PhoneBook::PBRecord& record = contact.record;
    if (field.attribute == PhoneBook::PBDBATTR_BODY && contact.has(field)) throw cannotHold(contact, "it has notes");
    if (field.attribute == PhoneBook::PBDBATTR_CATEGORIES && record.strCategories != asCategory(record.strGroup))
        throw cannotHold(contact, "it has other categories than its group");
}

std::u16string valueOf(const Contact& contact, const Field& field) {
    requireKeptByImport(contact, field);
    if (!contact.has(field)) return {};
    const PBAttribute& model = field.model();
    // Signed, as import reads numbers: it knows none from 2147483648 on.
    if (model.number != nullptr)
        return widened(std::to_string(static_cast<std::int32_t>(contact.record.*model.number)));
    if (model.date != nullptr) return dateText(contact, contact.record.*model.date);
    const bool isCategories = field.attribute == PhoneBook::PBDBATTR_CATEGORIES;
    const CString& text = isCategories ? contact.record.strGroup : contact.record.*model.text;
    if (const char* const why = whyNotHeld(text.view()); why != nullptr)
        throw cannotHold(contact, std::string("its field \"") + field.key + "\" " + why);
    return std::u16string(text.view());
}

std::u16string lineOf(const Contact& contact) {
    if (contact.record.dwCITypeMask == 0) throw cannotHold(contact, "it has no field at all");
    if (!canBeStored(lengthsOf(contact.record))) throw cannotHold(contact, "its values are too long together");
    std::u16string line;
    // The columns stand in the order of the phone book's attributes, of which the first is none.
    for (int attribute = 1; attribute < PhoneBook::nNumPBAttrs_; ++attribute) {
        if (attribute > 1) line += u',';
        line += valueOf(contact, fieldOf(static_cast<PhoneBook::PBDBAttrID>(attribute)));
    }
    return line + u'\n';
}

void append(std::string& bytes, std::u16string_view text) {
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
}

}  // namespace

std::string exportText(std::span<const Contact> contacts) {
    std::string bytes;
    append(bytes, header);
    for (const Contact& contact : contacts)
        append(bytes, lineOf(contact));
    return bytes;
}

void requireWellFormed(const Contact& contact) {
    for (const Field& field : fields) {
        const PBAttribute& model = field.model();
        if (model.text == nullptr || isWellFormed((contact.record.*model.text).view())) continue;
        throw Failure("contact " + std::to_string(contact.oid) + " cannot be exported: its field \"" + field.key +
                      "\" is no well-formed text (export --json can)");
    }
}

}  // namespace Tool
