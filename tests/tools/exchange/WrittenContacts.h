#pragma once

#include <array>
#include <string>

#include "tests/tools/exchange/Drafts.h"
#include "tools/tessera/exchange/CsvWriter.h"
#include "tools/tessera/exchange/VCardWriter.h"

namespace exchange_test {

enum class Written { card21, card30, card40, table };
inline constexpr std::array allWritten = {Written::card21, Written::card30, Written::card40, Written::table};

/// A file of one contact, without a byte-order mark.
inline std::string written(const Tool::Contact& contact, Written how) {
    constexpr std::array versions = {Tool::VCardVersion::v21, Tool::VCardVersion::v30, Tool::VCardVersion::v40};
    if (how != Written::table) return Tool::vcardOf(contact, versions.at(static_cast<std::size_t>(how)));
    return Tool::csvHeader().substr(3) + Tool::csvRowOf(contact);
}

inline DraftedFile readAgain(const std::string& bytes, Written how, const std::string& encoding = {}) {
    if (how != Written::table) return cards(bytes, encoding);
    const Tool::SourceText source = sourceOf(bytes, encoding);
    return Tool::draftsOfCsv(source, source.utf8(), {});
}

}  // namespace exchange_test
