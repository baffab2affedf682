#include "tests/phonebook/ManagersAtWork.h"

#include <array>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/database/Iterator.h"
#include "tessera/platform/base/Unicode.h"
#include "tests/support/Builders.h"
#include "tests/support/Values.h"

namespace testing_support {

using Database::Iterator;
using namespace PhoneBook;

namespace {

/// A contact as a worker has left it.
struct LeftContact {
    WString name;
    WString mobile;
    WString group;  ///< Empty: it has no extension row.

    friend bool operator==(const LeftContact&, const LeftContact&) = default;
    friend std::ostream& operator<<(std::ostream& out, const LeftContact& contact) {
        return out << utf8Of(contact.name) << '|' << utf8Of(contact.mobile) << '|' << utf8Of(contact.group);
    }
};

/// What a worker has done, and the contacts that it has left, by their identifiers.
struct WorkReport {
    bool succeeded = false;
    unsigned inserted = 0;
    unsigned updated = 0;
    unsigned deleted = 0;
    std::map<DWORD, LeftContact> left;
};

constexpr unsigned workers = 2;
constexpr std::size_t most = 100;  // contacts of one worker: it deletes more, once it has so many

WString textOf(const std::string& bytes) {
    return WString(textOfUtf8(bytes).value().view());
}

WString digits(unsigned number) {
    return textOf(std::to_string(number));
}

/// One worker, with a manager of its own over the mounted store.
class Worker {
public:
    explicit Worker(unsigned number) : number_(number), random_(number) {}

    /// Works one round in any case, and stops at the first operation that fails.
    WorkReport workFor(std::chrono::seconds howLong) {
        const auto deadline = std::chrono::steady_clock::now() + howLong;
        do {
            if (!round()) return report_;
        } while (std::chrono::steady_clock::now() < deadline);
        report_.succeeded = true;
        return report_;
    }

private:
    bool round() {
        const bool enough = report_.left.size() >= most;
        return insert() && insert() && update() && erase() && (!enough || erase());
    }

    bool insert() {
        const LeftContact made = anyContact(TEXT("made"));
        PBRecord record = recordOf(made);
        DWORD oid = 0;
        if (book_->insertPBRecord(record, &oid) != S_OK || oid == 0) return false;
        report_.left[oid] = made;
        ++report_.inserted;
        return true;
    }
    bool update() {
        const auto picked = anyLeft();
        LeftContact changed = anyContact(TEXT("changed"));
        PBRecord record = recordOf(changed);
        if (book_->updatePBRecord(picked->first, record) != S_OK) return false;
        if (changed.group.empty()) changed.group = picked->second.group;  // its extension row is not touched
        picked->second = changed;
        ++report_.updated;
        return true;
    }
    bool erase() {
        const auto picked = anyLeft();
        if (FAILED(book_->deletePBRecord(picked->first))) return false;
        report_.left.erase(picked);
        ++report_.deleted;
        return true;
    }

    /// Every other one has a group, and with it an extension row.
    LeftContact anyContact(const WString& what) {
        const WString made = digits(++made_);
        return {what + u' ' + made + TEXT(" by ") + digits(number_), TEXT("010-") + digits(number_) + u'-' + made,
                random_() % 2 == 0 ? TEXT("Group ") + digits(number_) : TEXT("")};
    }
    static PBRecord recordOf(const LeftContact& contents) {
        contact built;
        built.name(contents.name).mobile(contents.mobile);
        if (!contents.group.empty()) built.group(contents.group);
        return built.record();
    }
    std::map<DWORD, LeftContact>::iterator anyLeft() {
        return std::next(report_.left.begin(), static_cast<std::ptrdiff_t>(random_() % report_.left.size()));
    }

    unsigned number_;
    std::minstd_rand random_;
    unsigned made_ = 0;
    OpenPhoneBook book_;
    WorkReport report_;
};

WString textAt(Iterator& rows, int pbAttrId) {
    return WString(rows.getString(getAttrIDInTable(pbAttrId)).view());
}

/// Every contact that the store holds, with the group of its extension row, and each row with its contact.
std::map<DWORD, LeftContact> heldBy(OpenPhoneBook& book) {
    std::map<DWORD, LeftContact> held;
    const std::unique_ptr<Iterator> contacts(book->getIterator(PBDBTBL_POLCONTACTS, 0, nullptr, nullptr));
    while (contacts && contacts->next() == S_OK)
        held[contacts->getCur()] = {textAt(*contacts, PBDBATTR_NAME), textAt(*contacts, PBDBATTR_MOBILETEL), TEXT("")};
    const std::unique_ptr<Iterator> extensions(book->getIterator(PBDBTBL_PHONEBOOKEXT, 0, nullptr, nullptr));
    while (extensions && extensions->next() == S_OK) {
        const DWORD contactOid = extensions->getProp(0).getUI4();
        EXPECT_TRUE(held.contains(contactOid)) << "an extension row without its contact " << contactOid;
        EXPECT_TRUE(held[contactOid].group.empty()) << "a second extension row of " << contactOid;
        held[contactOid].group = textAt(*extensions, PBDBATTR_GROUP);
    }
    return held;
}

void expectWorked(const WorkReport& report) {
    EXPECT_TRUE(report.succeeded);
    EXPECT_GE(report.inserted, 1u);
    EXPECT_GE(report.updated, 1u);
    EXPECT_GE(report.deleted, 1u);
    EXPECT_EQ(report.left.size(), report.inserted - report.deleted);
}

/// The mounted store holds what the reports say, and nothing else.
void expectHeld(const std::array<WorkReport, workers>& reports) {
    std::map<DWORD, LeftContact> expected;
    unsigned extensionRows = 0;
    for (const WorkReport& report : reports) {
        expectWorked(report);
        for (const auto& [oid, contact] : report.left) {
            EXPECT_TRUE(expected.emplace(oid, contact).second) << "both have made " << oid;
            extensionRows += contact.group.empty() ? 0 : 1;
        }
    }

    OpenPhoneBook book;
    EXPECT_EQ(book->getNumRecords(), expected.size());
    EXPECT_EQ(book->getTable(PBDBTBL_PHONEBOOKEXT)->getNumRecords(), extensionRows);
    EXPECT_EQ(heldBy(book), expected);
    for (const auto& [oid, contact] : expected) {
        PBRecord record;
        record.dwCITypeMask = getCITypeMaskFromPBDBAttrID(PBDBATTR_GROUP);
        EXPECT_EQ(book->queryCallerInfo(oid, &record), contact.group.empty() ? S_FALSE : S_OK) << contact;
        EXPECT_EQ(record.strGroup, CString(contact.group));
    }
}

// A report as text: what was done, then a line for each contact.

void writeReport(const std::filesystem::path& path, const WorkReport& report) {
    std::ofstream out(path);
    out << report.succeeded << ' ' << report.inserted << ' ' << report.updated << ' ' << report.deleted << '\n';
    for (const auto& [oid, contact] : report.left)
        out << oid << '|' << contact << '\n';
}

WorkReport readReport(const std::filesystem::path& path) {
    WorkReport report;
    std::ifstream in(path);
    in >> report.succeeded >> report.inserted >> report.updated >> report.deleted >> std::ws;
    const auto field = [&in](char end) {
        std::string text;
        std::getline(in, text, end);
        return text;
    };
    while (in.peek() != std::ifstream::traits_type::eof()) {
        const auto oid = static_cast<unsigned>(std::stoul(field('|')));
        const WString name = textOf(field('|'));
        const WString mobile = textOf(field('|'));
        report.left[oid] = {name, mobile, textOf(field('\n'))};
    }
    return report;
}

/// Whatever is thrown ends the process here: it must not return into the copy of the test that it is.
[[noreturn]] void workAndExit(const TemporaryFolder& folder, unsigned worker, std::chrono::seconds howLong) noexcept {
    WorkReport report;
    const bool mounted = ObjectStore::mount((folder / "store.db").string(), quickOptions()) != FALSE;
    if (mounted) report = Worker(worker).workFor(howLong);
    ObjectStore::unmount();
    writeReport(folder / std::to_string(worker), report);
    ::_exit(0);
}

}  // namespace

void expectTwoThreadsLeaveWhatTheySay(const MountKind& kind, std::chrono::seconds howLong) {
    const std::shared_ptr<void> store = kind.mount();
    const OpenPhoneBook setUp;
    std::array<WorkReport, workers> reports;
    std::vector<std::thread> threads;
    for (unsigned worker = 0; worker < workers; ++worker)
        threads.emplace_back([&, worker] { reports[worker] = Worker(worker).workFor(howLong); });
    for (std::thread& thread : threads)
        thread.join();
    expectHeld(reports);
}

void expectTwoProcessesLeaveWhatTheySay(std::chrono::seconds howLong) {
    const TemporaryFolder folder;
    std::array<pid_t, workers> children{};
    for (unsigned worker = 0; worker < workers; ++worker) {
        children[worker] = ::fork();
        ASSERT_NE(children[worker], -1);
        if (children[worker] == 0) workAndExit(folder, worker, howLong);
    }
    std::array<WorkReport, workers> reports;
    for (unsigned worker = 0; worker < workers; ++worker) {
        int status = -1;
        ASSERT_EQ(::waitpid(children[worker], &status, 0), children[worker]);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        reports[worker] = readReport(folder / std::to_string(worker));
    }
    ASSERT_TRUE(ObjectStore::mount((folder / "store.db").string(), quickOptions()));
    expectHeld(reports);
    ObjectStore::unmount();
}

}  // namespace testing_support
