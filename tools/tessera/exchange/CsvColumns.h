#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "NumberPlaces.h"

namespace Tool {

/// What a column of somebody's table is about.
enum class CsvRole {
    unknown,
    passedOver,  ///< Says nothing of a person.
    wholeName,
    familyName,
    givenName,
    middleName,
    namePrefix,
    nameSuffix,
    organisation,
    nickname,
    number,       ///< Of the kind that the column has.
    numberValue,  ///< Of the kind that the label with the same index has.
    numberLabel,
    email,
    emailLabel,
    birthday,
    birthYear,
    birthMonth,
    birthDay,
    notes,
    group,
    categories,
    labels,  ///< Categories as web address books write them.
    field    ///< A text or a number of our own.
};

struct CsvColumn {
    std::string heading;
    CsvRole role = CsvRole::unknown;
    NumberKind kind = NumberKind::other;
    PhoneBook::PBDBAttrID field = PhoneBook::PBDBATTR_NONE;
    std::string index{};  ///< The digits in the heading.
};

/// What the user says of a column that no table knows, or knows wrong.
struct ColumnMapping {
    std::string heading;
    std::string field;
};

/// Takes "column=field" apart. Throws a Failure of wrong usage when it is none, or there is no such field.
ColumnMapping columnMappingOf(const std::string& argument);

/// Headings as they stand in a sentence, not all when there are many.
std::string listOfHeadings(const std::vector<std::string>& headings);

/// What the columns of these headings are about. Throws a Failure of wrong usage that lists the headings when there is
/// no column of which a mapping speaks.
std::vector<CsvColumn> columnsOf(const std::vector<std::string>& headings, const std::vector<ColumnMapping>& mappings);

/// How many of the columns mean something.
std::size_t countKnown(const std::vector<CsvColumn>& columns);
/// Whether there is one that says who somebody is, or how to reach somebody.
bool tellOfPeople(const std::vector<CsvColumn>& columns);

}  // namespace Tool
