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

constexpr WStringView header =
    TEXT("\uFEFFName,Group,Categories,Mobile,Home,Business,E-mail,Avatar,Photo,Bell,Birthday,Calling screen,Pager,Fax,")
        TEXT("Notes,Private,Primary\n");

bool isWellFormed(WStringView text) {
    const auto same = textOfUtf8(utf8Of(text));
    return same && same->view() == text && text.find(u'\0') == WStringView::npos;
}

/// Why import would read another value than this text from a line; null when it would not.
const char* whyNotHeld(WStringView text) {
    constexpr WStringView split(TEXT(",\n\0"), 3);
    constexpr WStringView trimmedBehind = TEXT("\" \t");
    constexpr WStringView trimmedBefore = TEXT(" \"");
    if (text.find_first_of(split) != WStringView::npos) return "holds a comma, a line feed or a zero character";
    if (text.empty()) return nullptr;
    if (trimmedBefore.find(text.front()) != WStringView::npos) return "begins with a blank or a quote";
    if (trimmedBehind.find(text.back()) != WStringView::npos) return "ends with a blank, a tab or a quote";
    return isWellFormed(text) ? nullptr : "is no well-formed text";
}

Failure cannotHold(const Contact& contact, const std::string& what) {
    return Failure("contact " + std::to_string(contact.oid) + " cannot be exported: " + what +
                   ", which the import format cannot hold (try --format vcard, or --json)");
}

WString widened(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

WString dateText(const Contact& contact, DATE date) {
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

WString valueOf(const Contact& contact, const Field& field) {
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
    return WString(text.view());
}

WString lineOf(const Contact& contact) {
    if (contact.record.dwCITypeMask == 0) throw cannotHold(contact, "it has no field at all");
    if (!canBeStored(lengthsOf(contact.record))) throw cannotHold(contact, "its values are too long together");
    WString line;
    // The columns stand in the order of the phone book's attributes, of which the first is none.
    for (int attribute = 1; attribute < PhoneBook::nNumPBAttrs_; ++attribute) {
        if (attribute > 1) line += u',';
        line += valueOf(contact, fieldOf(static_cast<PhoneBook::PBDBAttrID>(attribute)));
    }
    return line + TEXT("\n");
}

void append(std::string& bytes, WStringView text) {
    for (const WCHAR unit : text) {
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
