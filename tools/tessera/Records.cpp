#include "Records.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"

namespace Tool {

using PhoneBook::PBAttribute;
using PhoneBook::PBRecord;
using PhoneBook::PhoneBookDBMgr;

namespace {

constexpr std::size_t recordBytes = 131'072;

/// What the texts of one of the two rows take.
std::size_t bytesInTable(const TextLengths& lengths, int table) {
    // The name stands in both rows, and in the contact once more, split into first and last; so does the
    // group, being the contact's category.
    std::size_t units = lengths[PhoneBook::PBDBATTR_NAME] + lengths[PhoneBook::PBDBATTR_GROUP];
    for (const PBAttribute& attribute : PhoneBook::aPBAttribute_) {
        const bool stored = attribute.id != PhoneBook::PBDBATTR_CATEGORIES &&
                            attribute.id != PhoneBook::PBDBATTR_BODY && attribute.id != PhoneBook::PBDBATTR_GROUP;
        if (attribute.text != nullptr && stored && attribute.place.nTableID == table)
            units += lengths[static_cast<std::size_t>(attribute.id)];
    }
    return units * sizeof(WCHAR);
}

}  // namespace

TextLengths lengthsOf(const PBRecord& record) {
    TextLengths lengths{};
    for (const PBAttribute& field : PhoneBook::aPBAttribute_) {
        if (field.text != nullptr) lengths[static_cast<std::size_t>(field.id)] = (record.*field.text).view().size();
    }
    return lengths;
}

bool canBeStored(const TextLengths& lengths, std::size_t more) {
    const bool each = std::all_of(lengths.begin(), lengths.end(),
                                  [](std::size_t length) { return length <= static_cast<std::size_t>(longestText); });
    return each && bytesInTable(lengths, PhoneBook::PBDBTBL_POLCONTACTS) + more * sizeof(WCHAR) <= recordBytes &&
           bytesInTable(lengths, PhoneBook::PBDBTBL_PHONEBOOKEXT) <= recordBytes;
}

bool fitARow(const std::vector<CString>& texts) {
    std::size_t bytes = 0;
    for (const CString& text : texts) {
        if (text.GetLength() > longestText) return false;
        bytes += text.view().size() * sizeof(WCHAR);
    }
    return bytes <= recordBytes;
}

bool canBeBirthday(DATE day) {
    FILETIME time;
    return day != 0.0 && day != noBirthday && fileTimeOfDate(day, time) != FALSE;
}

const Field& fieldOf(PhoneBook::PBDBAttrID attribute) {
    return *std::find_if(fields.begin(), fields.end(),
                         [attribute](const Field& field) { return field.attribute == attribute; });
}

const Field* numberField(DWORD type) {
    const auto* field = std::find_if(fields.begin(), fields.end(), [type](const Field& each) {
        return PhoneBookDBMgr::isTelNoAttr(each.attribute) && each.mask() == type;
    });
    return field != fields.end() ? field : nullptr;
}

std::string fieldText(const Contact& contact, const Field& field) {
    if (!contact.has(field)) return {};
    const PBAttribute& model = field.model();
    if (model.text != nullptr) return utf8Of((contact.record.*model.text).view());
    if (model.number != nullptr) return std::to_string(contact.record.*model.number);
    return isoDate(contact.record.*model.date);
}

PBRecord wantingAllFields() {
    PBRecord record;
    for (const Field& field : fields)
        record.dwCITypeMask |= field.mask();
    return record;
}

std::optional<Contact> readContact(PhoneBookDBMgr& manager, DWORD oid) {
    Contact contact{oid, wantingAllFields()};
    if (FAILED(manager.queryCallerInfo(oid, &contact.record))) return std::nullopt;
    return contact;
}

std::vector<Contact> readContacts(PhoneBookDBMgr& manager, Database::Iterator* taken) {
    const std::unique_ptr<Database::Iterator> iterator(taken);
    std::vector<Contact> contacts;
    while (iterator && iterator->next() == S_OK) {
        // A contact that another program deleted meanwhile is left out.
        if (auto contact = readContact(manager, iterator->getCur())) contacts.push_back(std::move(*contact));
    }
    return contacts;
}

bool holdsNumber(const Contact& contact, const CString& reduced) {
    return std::any_of(fields.begin(), fields.end(), [&](const Field& field) {
        return PhoneBookDBMgr::isTelNoAttr(field.attribute) && contact.has(field) &&
               PhoneBookDBMgr::makeCNIP(contact.record.*field.model().text) == reduced;
    });
}

std::string isoDate(DATE date) {
    const COleDateTime day(date);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", day.GetYear(), day.GetMonth(), day.GetDay());
    return text;
}

}  // namespace Tool
