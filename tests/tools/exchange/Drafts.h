#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tessera/platform/base/Unicode.h"
#include "tests/tools/CardText.h"
#include "tools/tessera/Records.h"
#include "tools/tessera/exchange/CsvContact.h"
#include "tools/tessera/exchange/VCardContact.h"

namespace exchange_test {

using namespace PhoneBook;
using Tool::ContactDraft;
using Tool::DraftedFile;

inline Tool::SourceText sourceOf(std::string_view bytes, const std::string& encoding = {}) {
    return Tool::SourceText("people.file", std::string(bytes), encoding);
}

inline DraftedFile cards(std::string_view bytes, const std::string& encoding = {}) {
    return Tool::draftsOfVCards(sourceOf(bytes, encoding));
}

/// One card of these lines, version 3.0 unless they say something else.
inline ContactDraft card(const std::string& lines, const std::string& version = "3.0") {
    DraftedFile file = cards(testing_support::vcard("VERSION:" + version + "\n" + lines));
    return file.drafts.at(0);
}

inline DraftedFile table(std::string_view bytes, const std::vector<std::string>& mappings = {}) {
    const Tool::SourceText source = sourceOf(bytes);
    std::vector<Tool::ColumnMapping> read;
    for (const std::string& each : mappings)
        read.push_back(Tool::columnMappingOf(each));
    return Tool::draftsOfCsv(source, source.utf8(), read);
}

/// The field as people see it; empty when the contact lacks it.
inline std::string in(const ContactDraft& draft, PBDBAttrID field) {
    return Tool::fieldText({0, draft.record}, Tool::fieldOf(field));
}

inline std::string nameIn(const ContactDraft& draft) {
    return in(draft, PBDBATTR_NAME);
}

inline std::vector<std::string> namesIn(const DraftedFile& file) {
    std::vector<std::string> names;
    for (const ContactDraft& draft : file.drafts)
        names.push_back(draft.problem.empty() ? nameIn(draft) : "! " + draft.problem);
    return names;
}

}  // namespace exchange_test
