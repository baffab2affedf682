// The import dies at a random instant, as when the battery is taken out: what it told of is there, and every
// contact is whole.

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/base/Unicode.h"
#include "tests/support/ToolRunner.h"

using nlohmann::json;
using PhoneBook::PBRecord;
using PhoneBook::PhoneBookDBMgr;
using testing_support::Outcome;
using testing_support::Process;
using testing_support::ToolRunner;

namespace {

constexpr int lines = 8'000;
constexpr int rounds = 50;
constexpr DWORD nameBit = 0x1;
constexpr DWORD groupBit = 0x10000;

/// Every other line has a group, and so an extension row.
bool hasGroup(int line) {
    return line % 2 == 0;
}

std::string nameOf(int line) {
    return "Person " + std::to_string(line);
}

std::string sourceText() {
    std::string text = "Name,Group\n";
    for (int line = 2; line < lines + 2; ++line)
        text += nameOf(line) + (hasGroup(line) ? ",friends" : ",") + ",,010-" + std::to_string(line) + "\n";
    return text;
}

/// What the killed process had told: the contact that each line became.
std::map<int, CEOID> toldOf(const std::string& output) {
    std::map<int, CEOID> told;
    std::size_t start = 0;
    for (std::size_t end; (end = output.find('\n', start)) != std::string::npos; start = end + 1) {
        const json object = json::parse(output.substr(start, end - start));
        if (object.contains("oid")) told[object["line"]] = object["oid"];
    }
    return told;
}

/// Imports until as much was written, and then for as long; answers what was read of the output.
std::string importUntil(const ToolRunner& tool, const std::string& source, std::size_t bytes,
                        std::chrono::microseconds longer) {
    Process import(tool.command({"import", "--json", source}));
    std::string output;
    while (output.size() < bytes) {
        const auto more = import.read(std::chrono::seconds(30));
        if (!more) break;
        output += *more;
    }
    const auto end = std::chrono::steady_clock::now() + longer;
    while (std::chrono::steady_clock::now() < end) {
        const auto more = import.read(std::chrono::milliseconds(1));
        if (!more) break;
        output += *more;
    }
    import.kill();
    import.wait();
    return output;
}

/// The number of the line that a contact came from.
int lineOf(const PBRecord& record) {
    return std::stoi(utf8Of(record.strName.view()).substr(nameOf(0).size() - 1));
}

/// The contact of every extension row.
std::set<DWORD> contactsWithExtension(PhoneBookDBMgr& manager) {
    const std::unique_ptr<Database::Iterator> rows(
        manager.getIterator(PhoneBook::PBDBTBL_PHONEBOOKEXT, 0, nullptr, nullptr));
    std::set<DWORD> oids;
    while (rows && rows->next() == S_OK)
        oids.insert(rows->getProp(0).getUI4());
    return oids;
}

/// Checks that each contact has the fields of its line; answers their lines.
std::map<int, DWORD> checkContacts(PhoneBookDBMgr& manager, const std::set<DWORD>& extensions) {
    std::map<int, DWORD> found;
    const std::unique_ptr<Database::Iterator> contacts(manager.getIterator(PhoneBook::PBDBATTR_NAME, nullptr, nullptr));
    while (contacts && contacts->next() == S_OK) {
        const DWORD oid = contacts->getCur();
        PBRecord record;
        record.dwCITypeMask = nameBit | groupBit;
        EXPECT_GE(manager.queryCallerInfo(oid, &record), 0);
        const int line = lineOf(record);
        EXPECT_EQ(extensions.contains(oid), hasGroup(line)) << record.strName.view().size();
        EXPECT_EQ(utf8Of(record.strGroup.view()), hasGroup(line) ? "friends" : "");
        EXPECT_TRUE(found.emplace(line, oid).second) << "line " << line << " is there twice";
    }
    return found;
}

void checkStore(const ToolRunner& tool, const std::map<int, CEOID>& told) {
    ASSERT_TRUE(ObjectStore::mount(tool.store().string())) << ObjectStore::errorText();
    {
        PhoneBookDBMgr manager;
        ASSERT_EQ(manager.openDB(nullptr), S_OK);
        const auto extensions = contactsWithExtension(manager);
        const auto found = checkContacts(manager, extensions);
        const auto withGroup =
            std::count_if(found.begin(), found.end(), [](auto& entry) { return hasGroup(entry.first); });
        EXPECT_EQ(static_cast<std::size_t>(withGroup), extensions.size()) << "an extension row has no contact";
        for (const auto& [line, oid] : told) {
            const auto entry = found.find(line);
            ASSERT_NE(entry, found.end()) << "line " << line << " was told to be imported, and is gone";
            EXPECT_EQ(entry->second, oid);
        }
    }
    ObjectStore::unmount();
}

}  // namespace

TEST(ImportKill, LosesNothingThatWasToldAndLeavesEveryContactWhole) {
    const std::random_device::result_type seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    int told = 0;
    for (int round = 0; round < rounds; ++round) {
        const ToolRunner tool(TESSERA_TOOL);
        ASSERT_EQ(tool("init").status, 0);
        const std::string source = tool.file("people.csv", sourceText());
        // One round in four dies before it told anything, the others somewhere on the way.
        const std::size_t bytes = round % 4 == 0 ? 0 : 1 + random() % 60'000;
        const auto output = importUntil(tool, source, bytes, std::chrono::microseconds(random() % 100'000));
        const auto lineOids = toldOf(output);
        told += lineOids.empty() ? 0 : 1;
        ASSERT_NO_FATAL_FAILURE(checkStore(tool, lineOids)) << "round " << round;
        EXPECT_TRUE(std::filesystem::is_empty(tool.temporary())) << "the import left its working file";
    }
    EXPECT_GE(told, rounds / 2) << "most rounds should die while they tell";
}
