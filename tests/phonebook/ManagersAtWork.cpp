#include "tests/phonebook/ManagersAtWork.h"

#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/database/Iterator.h"
#include "tests/support/Builders.h"
#include "tests/support/Values.h"

namespace testing_support {

using Database::Iterator;
using namespace PhoneBook;

namespace {

constexpr std::size_t most = 100;  // contacts of one worker: it deletes more, once it has so many

WString digits(unsigned number) {
    const std::string text = std::to_string(number);
    return {text.begin(), text.end()};
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
        return {what + TEXT(' ') + made + TEXT(" by ") + digits(number_),
                TEXT("010-") + digits(number_) + TEXT('-') + made,
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

}  // namespace

void expectHeld(const WorkReports& reports) {
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

WorkReport workFor(std::chrono::seconds howLong, unsigned worker) {
    return Worker(worker).workFor(howLong);
}

void expectTwoThreadsLeaveWhatTheySay(const MountKind& kind, std::chrono::seconds howLong) {
    const std::shared_ptr<void> store = kind.mount();
    const OpenPhoneBook setUp;
    WorkReports reports;
    std::vector<std::thread> threads;
    for (unsigned worker = 0; worker < workers; ++worker)
        threads.emplace_back([&, worker] { reports[worker] = workFor(howLong, worker); });
    for (std::thread& thread : threads)
        thread.join();
    expectHeld(reports);
}

}  // namespace testing_support
