// Files of contacts as phones and other programs write them. The input's first character says what the file is: '0'
// what it looks like, '1' cards, '2' a table; the rest is the file.
//
// Whatever the file, it is refused, or every card and row of it becomes a draft that is either good or has a reason. A
// good draft is written in each format, and read again as the same without a remark.

#include <optional>
#include <string>

#include "fuzz/FuzzedInput.h"
#include "tessera/platform/base/Unicode.h"
#include "tests/tools/exchange/Stored.h"
#include "tools/tessera/Failure.h"
#include "tools/tessera/exchange/CsvContact.h"
#include "tools/tessera/exchange/CsvWriter.h"
#include "tools/tessera/exchange/FileFormat.h"
#include "tools/tessera/exchange/VCardContact.h"
#include "tools/tessera/exchange/VCardWriter.h"

using exchange_test::describe;
using exchange_test::stored;
using fuzz::require;
using Tool::ContactDraft;
using Tool::DraftedFile;
using Tool::FileFormat;
using Tool::SourceText;
using Tool::VCardVersion;

namespace {

/// Nothing when the file is refused.
std::optional<DraftedFile> draftsOf(const std::string& bytes, std::size_t kind) {
    try {
        const SourceText source("fuzzed", bytes, "");
        const FileFormat format = kind == 0   ? Tool::recogniseFormat(source)
                                  : kind == 1 ? FileFormat::vcard
                                              : FileFormat::csv;
        if (format == FileFormat::vcard) return Tool::draftsOfVCards(source);
        if (format == FileFormat::csv) return Tool::draftsOfCsv(source, source.utf8(), {});
    } catch (const Tool::Failure& failure) {
        require(std::string(failure.what()).starts_with("fuzzed: "), "a refusal names the file");
    }
    return std::nullopt;
}

bool isGoodText(const CString& text) {
    const auto same = textOfUtf8(utf8Of(text.view()));
    return same && *same == text && text.Find(u'\0') < 0 && text.Find(u'\r') < 0;
}

void requireGood(const ContactDraft& draft) {
    require(draft.line > 0, "a draft has a place in the file");
    if (!draft.problem.empty()) return;
    require(draft.record.dwCITypeMask != 0, "a good draft has something to say");
    for (const Tool::Field& field : Tool::fields) {
        if (field.model().text != nullptr)
            require(isGoodText(draft.record.*field.model().text), "its texts are well-formed");
    }
}

void requireSame(const ContactDraft& draft, const std::string& bytes, std::size_t kind) {
    const auto again = draftsOf(bytes, kind);
    require(again && again->drafts.size() == 1, "what is written is read as one contact");
    const ContactDraft& read = again->drafts.front();
    require(read.problem.empty() && read.note().empty(), "nothing of it is left out");
    require(describe(stored(read.record)) == describe(stored(draft.record)), "it is the same contact");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzedInput input(data, size);
    const std::size_t kind = input.choice(3);
    const auto file = draftsOf(std::string(input.rest()), kind);
    if (!file) return 0;
    for (const ContactDraft& draft : file->drafts) {
        requireGood(draft);
        if (!draft.problem.empty()) continue;
        const Tool::Contact contact{1, stored(draft.record)};
        for (const VCardVersion version : {VCardVersion::v21, VCardVersion::v30, VCardVersion::v40})
            requireSame(draft, Tool::vcardOf(contact, version), 1);
        // A table has no way to say that the group is not among the categories.
        const bool lacksCategory = !contact.record.strGroup.IsEmpty() && contact.record.strCategories.IsEmpty();
        if (!lacksCategory) requireSame(draft, Tool::csvHeader() + Tool::csvRowOf(contact), 2);
    }
    return 0;
}
