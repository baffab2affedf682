#include "CsvWriter.h"

#include <array>
#include <string_view>

#include "CsvReader.h"
#include "PersonName.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

struct WrittenColumn {
    std::string_view heading;
    PhoneBook::PBDBAttrID field;
};

/// Behind the name whole and in parts. What other address books know comes first, under the names that they know.
constexpr std::array<WrittenColumn, 16> columns = {{
    {"Mobile Phone", PhoneBook::PBDBATTR_MOBILETEL},
    {"Home Phone", PhoneBook::PBDBATTR_HOMETEL},
    {"Business Phone", PhoneBook::PBDBATTR_BUSINESSTEL},
    {"Business Fax", PhoneBook::PBDBATTR_BUSINESSFAX},
    {"Pager", PhoneBook::PBDBATTR_PAGER},
    {"E-mail Address", PhoneBook::PBDBATTR_EMAIL},
    {"Birthday", PhoneBook::PBDBATTR_BIRTHDAY},
    {"Categories", PhoneBook::PBDBATTR_CATEGORIES},
    {"Notes", PhoneBook::PBDBATTR_BODY},
    {"Group", PhoneBook::PBDBATTR_GROUP},
    {"Avatar", PhoneBook::PBDBATTR_AVATAR},
    {"Photo Name", PhoneBook::PBDBATTR_PHOTO},
    {"Ring Tone", PhoneBook::PBDBATTR_BELL},
    {"Calling Screen", PhoneBook::PBDBATTR_CALLINGSCREEN},
    {"Speed Dial Slots", PhoneBook::PBDBATTR_PRIVATE},
    {"Primary Number", PhoneBook::PBDBATTR_PRIMARYTELNO},
}};

constexpr std::string_view endOfRow = "\r\n";

/// Readers take an apostrophe, or an equals sign, in front of a number for what only keeps a spreadsheet from counting
/// with it: where one belongs to the number, an apostrophe before it goes instead.
std::string valueOf(const Contact& contact, const Field& field) {
    const std::string text = fieldText(contact, field);
    const bool isMisread = numberField(field.mask()) != nullptr && (text.starts_with('\'') || text.starts_with('='));
    return isMisread ? '\'' + text : text;
}

}  // namespace

std::string csvHeader() {
    std::string row;
    for (const std::string_view heading : {"Name", "First Name", "Last Name"})
        appendCsvValue(row, heading);
    for (const WrittenColumn& column : columns)
        appendCsvValue(row, column.heading);
    return "\xEF\xBB\xBF" + row + std::string(endOfRow);
}

std::string csvRowOf(const Contact& contact) {
    const PersonName parts = partsOfName(contact.record.strName.view());
    std::string row;
    appendCsvValue(row, utf8Of(contact.record.strName.view()));
    appendCsvValue(row, utf8Of(parts.given));
    appendCsvValue(row, utf8Of(parts.family));
    for (const WrittenColumn& column : columns)
        appendCsvValue(row, valueOf(contact, fieldOf(column.field)));
    return row + std::string(endOfRow);
}

}  // namespace Tool
