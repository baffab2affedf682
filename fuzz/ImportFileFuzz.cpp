// The import of a file. The input's first character is the mode, its second chooses the table that the file is
// named for, its third how the file is written: '0' the rest as text, in UTF-16LE, '1' the rest byte for byte.

#include <algorithm>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "fuzz/FuzzedInput.h"
#include "tessera/common/CommaSepValList.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/base/Unicode.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"

using fuzz::require;
using PhoneBook::PBRecord;

namespace {

constexpr int rowsMode = 1;

class Tally : public PhoneBook::ImportListener {
public:
    struct Line {
        int number;
        HRESULT result;
        CEOID oid;
    };

    void lineTried(int line, HRESULT result, CEOID oid) override { lines.push_back({line, result, oid}); }
    void linesCommitted(int line) override { committed = line; }

    std::vector<Line> lines;
    int committed = 0;
};

std::string bytesOf(const std::u16string& text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

/// The lines that an import should see: those behind the first, up to a zero; half a character does not count.
std::vector<std::u16string> linesOf(const std::string& file) {
    std::u16string text;
    for (std::size_t i = 0; i + 1 < file.size(); i += 2) {
        const auto low = static_cast<std::uint8_t>(file[i]);
        text += static_cast<char16_t>(low | static_cast<std::uint8_t>(file[i + 1]) << 8);
    }
    text = fuzz::upToZero(text);
    std::vector<std::u16string> lines;
    for (std::size_t at = text.find(u'\n'); at != std::u16string::npos && at + 1 < text.size();) {
        const std::size_t end = text.find(u'\n', at + 1);
        lines.push_back(text.substr(at + 1, end == std::u16string::npos ? end : end - at - 1));
        at = end;
    }
    return lines;
}

std::set<DWORD> contactsOf(PhoneBook::PhoneBookDBMgr& book) {
    std::set<DWORD> oids;
    const std::unique_ptr<Database::Iterator> all(book.getIterator(UINT{PhoneBook::PBDBATTR_NAME}, nullptr, nullptr));
    while (all != nullptr && all->next() == S_OK)
        oids.insert(all->getCur());
    return oids;
}

void checkExtensionRows(PhoneBook::PhoneBookDBMgr& book, const std::set<DWORD>& contacts, std::size_t lines) {
    const std::unique_ptr<Database::Iterator> rows(
        book.getIterator(UINT{PhoneBook::PBDBTBL_PHONEBOOKEXT}, 0, nullptr, nullptr));
    std::set<DWORD> owners;
    std::size_t count = 0;
    while (rows != nullptr && rows->next() == S_OK) {
        const DWORD owner = rows->getProp(0).getUI4();
        require(owner == 0 || contacts.contains(owner), "an extension row belongs to a contact or to none");
        require(owner == 0 || owners.insert(owner).second, "a contact has one extension row at most");
        ++count;
    }
    require(count <= lines, "a line makes one extension row at most");
}

void checkContact(PhoneBook::PhoneBookDBMgr& book, DWORD oid, const std::u16string& line) {
    CStringArray values;
    const int count = common::CommaSepValList(CString(line)).getList(values);
    PBRecord record;
    record.dwCITypeMask = 0x3D;
    static_cast<void>(book.queryCallerInfo(oid, &record));
    // The name and four more columns, which are kept as they are.
    for (const int column : {0, 3, 4, 5, 6}) {
        const CString expected = column < count ? values[column] : CString();
        const CString kept = record.*PhoneBook::aPBAttribute_[static_cast<std::size_t>(column) + 1].text;
        require(kept == expected, "a contact holds what its line says");
    }
}

void checkEntries(PhoneBook::PhoneBookDBMgr& book, const Tally& tally, const std::vector<std::u16string>& lines) {
    const std::set<DWORD> contacts = contactsOf(book);
    std::set<DWORD> made;
    for (const Tally::Line& line : tally.lines) {
        if (line.oid == 0) continue;
        made.insert(line.oid);
        checkContact(book, line.oid, lines[static_cast<std::size_t>(line.number) - 2]);
    }
    require(contacts == made, "the contacts are those that the listener heard of");
    require(contacts.size() <= lines.size(), "a line makes one contact at most");
    checkExtensionRows(book, contacts, lines.size());
}

void checkRows(Database::Table& table, DWORD before, const Tally& tally) {
    const auto inserted = std::ranges::count_if(tally.lines, [](const auto& line) { return line.result == S_OK; });
    require(table.getNumRecords() == before + static_cast<DWORD>(inserted), "each row that was taken is there");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const testing_support::TemporaryFolder folder;
    fuzz::FuzzedInput input(data, size);
    const int mode = static_cast<int>(input.choice(3));
    const auto tableId = static_cast<UINT>(input.choice(PhoneBook::nNumTables_));
    const bool asText = input.choice(2) == 0;
    const std::string_view rest = input.rest();
    const std::string file = asText ? bytesOf(fuzz::textOfBytes(rest)) : std::string(rest);
    const std::vector<std::u16string> lines = linesOf(file);
    const auto path = folder / (utf8Of(PhoneBook::aszTableName_[tableId]) + ".csv");
    std::ofstream(path, std::ios::binary).write(file.data(), static_cast<std::streamsize>(file.size()));

    const testing_support::MemoryStoreMount store;
    testing_support::OpenPhoneBook book;
    Database::Table& table = *book->getTable(tableId);
    const DWORD before = table.getNumRecords();
    Tally tally;
    CString from = *textOfUtf8(path.string());
    require(book->buildDBFromFile(from, mode, &tally) == S_OK, "a file that can be read is imported");

    require(tally.lines.size() == lines.size(), "every line behind the first is tried");
    for (std::size_t i = 0; i < lines.size(); ++i)
        require(tally.lines[i].number == static_cast<int>(i) + 2, "in order");
    require(lines.empty() || tally.committed == static_cast<int>(lines.size()) + 1, "and committed");
    mode == rowsMode ? checkRows(table, before, tally) : checkEntries(book.manager(), tally, lines);
    return 0;
}
