#include "tests/recovery/Crowd.h"

#include <algorithm>
#include <deque>
#include <map>
#include <ostream>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/contacts/ContactProperties.h"
#include "tests/recovery/CrowdMember.h"
#include "tests/support/StoreContents.h"
#include "tests/support/TemporaryStore.h"

namespace crowd_test {

using namespace testing_support;
using testing::IsEmpty;

namespace {

void mountOrThrow(const std::string& path, const ObjectStore::Options& options) {
    if (!ObjectStore::mount(path, options)) throw std::runtime_error(ObjectStore::errorText());
}

/// Gets ready when it hears what to work on, begins when it is told to, and tells what it has done.
void work(Line& parent, const std::string& path, unsigned number, const Crowd& crowd) {
    const auto counterOids = parent.hear<std::array<DWORD, counters>>();
    mountOrThrow(path, crowd.options);
    {
        Member member(number, crowd, counterOids);
        parent.say('r');
        parent.hear<char>();  // until the others are ready, too
        for (unsigned i = 0; i < crowd.operationsOfEach; ++i)
            member.call();
        member.told().sayTo(parent);
    }
    ObjectStore::unmount();
}

/// Begins when it is told to, and never ends.
void beBusy(Line& parent, const std::string& path, const Crowd& crowd) {
    parent.hear<char>();
    mountOrThrow(path, crowd.options);
    keepStoreBusy(parent);
}

unsigned unitsToldOf(Line& line) {
    unsigned heard = 1;  // that it has the store for the first time was heard at the beginning
    try {
        for (;; ++heard)
            line.hear<char>();
    } catch (const std::runtime_error&) {  // its end of the line was closed
    }
    return heard;
}

/// A contact as the store has it: name and mobile number.
using Written = std::pair<WString, WString>;

std::map<CEOID, Written> writtenContacts(const StoreContents& contents) {
    std::map<CEOID, Written> written;
    for (const StoredRecord& record : contents.database(szContactsDatabase).records) {
        const auto text = [&](CEPROPID property) {
            return WString(record.properties.getProp(identOf(property)).getText().view());
        };
        written[record.oid] = {text(ContactProperty::fileAs), text(ContactProperty::mobileTelephoneNumber)};
    }
    return written;
}

class Check {
public:
    Check(const std::vector<Told>& all, const std::array<DWORD, counters>& counterOids)
        : all_(all), counterOids_(counterOids) {}

    /// Each contact that somebody was told of is there as he left it, and no other.
    void contacts() const {
        std::map<CEOID, Written> expected;
        for (const DWORD oid : counterOids_)
            expected[oid] = {TEXT("Counter"), TEXT("")};
        for (const Told& told : all_) {
            for (const MadeContact& made : told.contacts)
                EXPECT_TRUE(expected.emplace(made.oid, Written{made.name(), made.mobile()}).second) << made.oid;
        }
        EXPECT_TRUE(expected == writtenContacts(contents_)) << "other contacts than those that were told of";
    }

    void groups() const {
        std::set<CString> expected;
        for (const Told& told : all_) {
            for (const unsigned number : told.groups)
                expected.insert(nameOfGroup(number));
        }
        const StoredDatabase& rows = contents_.database(PhoneBook::aszTableName_[PhoneBook::PBDBTBL_AVAILABLEPBGROUP]);
        std::set<CString> found;
        std::set<DWORD> ids;
        for (const StoredRecord& row : rows.records) {
            found.insert(row.properties.getProp(0x301).getText());
            ids.insert(row.properties.getProp(0x300).getUI4());
        }
        EXPECT_TRUE(expected == found) << "other groups than those that were told of";
        EXPECT_EQ(rows.records.size(), ids.size()) << "an ID was given twice";
    }

    /// No increment was lost.
    void counts() const {
        OpenPhoneBook book;
        for (std::size_t which = 0; which < counters; ++which) {
            unsigned expected = 0;
            for (const Told& told : all_)
                expected += told.increments[which];
            PhoneBook::PBRecord record;
            record.dwCITypeMask = PhoneBook::dwExtensionMask_;
            EXPECT_TRUE(SUCCEEDED(book->queryCallerInfo(counterOids_[which], &record)));
            EXPECT_EQ(expected, record.dwCallingScreen) << "counter " << which;
        }
    }

    void soundness() const {
        EXPECT_THAT(faultsOf(contents_), IsEmpty());
        EXPECT_THAT(faultsOfOrders(), IsEmpty());
    }

private:
    const std::vector<Told>& all_;
    const std::array<DWORD, counters>& counterOids_;
    StoreContents contents_ = contentsOfStore();
};

void startTogether(std::deque<Forked>& members, const std::array<DWORD, counters>& counterOids) {
    for (Forked& member : members)
        member.line().say(counterOids);
    for (Forked& member : members)
        member.line().hear<char>();
    for (Forked& member : members)
        member.line().say('g');
}

std::vector<Told> hearFromAll(std::deque<Forked>& members) {
    std::vector<Told> all;
    for (Forked& member : members) {
        all.push_back(Told::hearFrom(member.line()));
        EXPECT_EQ(0, member.wait());
    }
    return all;
}

Figures sumOf(const std::vector<Told>& all) {
    Figures sum;
    for (const Told& told : all) {
        EXPECT_EQ(0u, told.tooLong) << "calls took too long, the longest " << told.figures.longest.count() << " ms";
        sum.calls += told.figures.calls;
        sum.refused += told.figures.refused;
        sum.longest = std::max(sum.longest, told.figures.longest);
    }
    return sum;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Figures& figures) {
    return out << figures.calls << " calls, " << figures.refused << " refused, the longest " << figures.longest.count()
               << " ms, beside " << figures.unitsOfTheBusyOne << " long units";
}

Figures expectNothingLostInTheCrowd(const Crowd& crowd) {
    const TemporaryFolder folder;
    const std::string path = (folder / "store.db").string();
    Forked busy([&](Line& parent) { beBusy(parent, path, crowd); });
    std::deque<Forked> members;
    for (unsigned number = 0; number < crowd.programs; ++number)
        members.emplace_back([&, number](Line& parent) { work(parent, path, number, crowd); });

    mountOrThrow(path, crowd.options);
    std::array<DWORD, counters> counterOids{};
    {
        OpenPhoneBook book;
        counterOids = addCounters(book);
    }
    busy.line().say('g');
    busy.line().hear<char>();  // it has the store
    startTogether(members, counterOids);
    const std::vector<Told> all = hearFromAll(members);
    busy.kill();
    EXPECT_TRUE(WIFSIGNALED(busy.wait())) << "it ended by itself";

    const Check check(all, counterOids);
    check.contacts();
    check.groups();
    check.counts();
    check.soundness();
    ObjectStore::unmount();
    Figures figures = sumOf(all);
    figures.unitsOfTheBusyOne = unitsToldOf(busy.line());
    return figures;
}

}  // namespace crowd_test
