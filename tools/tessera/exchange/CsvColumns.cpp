#include "CsvColumns.h"

#include <algorithm>
#include <array>

#include "../Failure.h"
#include "CsvHeadings.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using PhoneBook::PBDBAttrID;

struct MappableField {
    std::string_view name;
    CsvRole role;
    NumberKind kind = NumberKind::other;
    PBDBAttrID field = PhoneBook::PBDBATTR_NONE;
};

/// The keys of a contact in JSON, and what tables have besides.
constexpr auto mappable = std::to_array<MappableField>({
    {"name", CsvRole::wholeName},
    {"first-name", CsvRole::givenName},
    {"last-name", CsvRole::familyName},
    {"company", CsvRole::organisation},
    {"group", CsvRole::group},
    {"categories", CsvRole::categories},
    {"mobile", CsvRole::number, NumberKind::mobile},
    {"home", CsvRole::number, NumberKind::home},
    {"business", CsvRole::number, NumberKind::business},
    {"pager", CsvRole::number, NumberKind::pager},
    {"fax", CsvRole::number, NumberKind::fax},
    {"number", CsvRole::number},
    {"email", CsvRole::email},
    {"birthday", CsvRole::birthday},
    {"body", CsvRole::notes},
    {"avatar", CsvRole::field, NumberKind::other, PhoneBook::PBDBATTR_AVATAR},
    {"photo", CsvRole::field, NumberKind::other, PhoneBook::PBDBATTR_PHOTO},
    {"bell", CsvRole::field, NumberKind::other, PhoneBook::PBDBATTR_BELL},
    {"callingScreen", CsvRole::field, NumberKind::other, PhoneBook::PBDBATTR_CALLINGSCREEN},
    {"private", CsvRole::field, NumberKind::other, PhoneBook::PBDBATTR_PRIVATE},
    {"primary", CsvRole::field, NumberKind::other, PhoneBook::PBDBATTR_PRIMARYTELNO},
    {"nothing", CsvRole::passedOver},
});

const MappableField* fieldNamed(std::string_view name) {
    const auto* found =
        std::find_if(mappable.begin(), mappable.end(), [name](const auto& each) { return each.name == name; });
    return found == mappable.end() ? nullptr : found;
}

std::string mappableFields() {
    std::string list;
    for (const MappableField& field : mappable)
        list += (list.empty() ? "" : ", ") + std::string(field.name);
    return list;
}

WString plainly(const std::string& heading) {
    const auto text = textOfUtf8(heading);
    return text ? spelledPlainly(text->view()) : WString();
}

bool isDigit(WCHAR unit) {
    return unit >= u'0' && unit <= u'9';
}

CsvColumn columnOf(const std::string& heading) {
    CsvColumn column{.heading = heading};
    WString name = plainly(heading);
    for (const WCHAR unit : name) {
        if (isDigit(unit)) column.index += static_cast<char>(unit);
    }
    std::erase_if(name, isDigit);
    const auto* known =
        std::find_if(knownHeadings.begin(), knownHeadings.end(), [&](const auto& each) { return each.name == name; });
    if (known == knownHeadings.end()) return column;
    column.role = known->role;
    column.kind = known->kind;
    column.field = known->field;
    return column;
}

bool hasRole(const std::vector<CsvColumn>& columns, CsvRole role) {
    return std::any_of(columns.begin(), columns.end(), [role](const auto& column) { return column.role == role; });
}

void apply(const ColumnMapping& mapping, const std::vector<std::string>& headings, std::vector<CsvColumn>& columns) {
    const MappableField& field = *fieldNamed(mapping.field);
    const WString wanted = plainly(mapping.heading);
    bool isThere = false;
    for (CsvColumn& column : columns) {
        const bool isMeant =
            column.heading == mapping.heading || (!wanted.empty() && plainly(column.heading) == wanted);
        if (!isMeant) continue;
        isThere = true;
        column.role = field.role;
        column.kind = field.kind;
        column.field = field.field;
    }
    if (!isThere)
        throw wrongUsage("--map: there is no column \"" + mapping.heading + "\"; there are " +
                         listOfHeadings(headings));
}

}  // namespace

ColumnMapping columnMappingOf(const std::string& argument) {
    const std::size_t equals = argument.rfind('=');
    if (equals == std::string::npos || equals == 0)
        throw wrongUsage("--map wants COLUMN=FIELD, not \"" + argument + "\"");
    ColumnMapping mapping{argument.substr(0, equals), argument.substr(equals + 1)};
    if (fieldNamed(mapping.field) == nullptr)
        throw wrongUsage("--map: there is no field \"" + mapping.field + "\"; there are " + mappableFields());
    return mapping;
}

std::string listOfHeadings(const std::vector<std::string>& headings) {
    constexpr std::size_t most = 30;
    std::string list;
    for (std::size_t i = 0; i < std::min(headings.size(), most); ++i)
        list += (list.empty() ? "" : ", ") + quoted(textOfUtf8(headings[i]).value_or(CString()).view());
    return headings.size() > most ? list + ", ..." : list;
}

std::vector<CsvColumn> columnsOf(const std::vector<std::string>& headings, const std::vector<ColumnMapping>& mappings) {
    std::vector<CsvColumn> columns;
    columns.reserve(headings.size());
    for (const std::string& heading : headings)
        columns.push_back(columnOf(heading));
    // Some give year, month and day of a birthday a column each, and the last is called as the whole is elsewhere.
    if (hasRole(columns, CsvRole::birthYear) && hasRole(columns, CsvRole::birthMonth)) {
        for (CsvColumn& column : columns)
            column.role = column.role == CsvRole::birthday ? CsvRole::birthDay : column.role;
    }
    for (const ColumnMapping& mapping : mappings)
        apply(mapping, headings, columns);
    return columns;
}

std::size_t countKnown(const std::vector<CsvColumn>& columns) {
    return static_cast<std::size_t>(std::count_if(
        columns.begin(), columns.end(), [](const CsvColumn& column) { return column.role != CsvRole::unknown; }));
}

bool tellOfPeople(const std::vector<CsvColumn>& columns) {
    constexpr std::array telling = {CsvRole::wholeName,    CsvRole::familyName, CsvRole::givenName,
                                    CsvRole::organisation, CsvRole::nickname,   CsvRole::number,
                                    CsvRole::numberValue,  CsvRole::email};
    return std::any_of(telling.begin(), telling.end(), [&](CsvRole role) { return hasRole(columns, role); });
}

}  // namespace Tool
