#include "tests/recovery/FollowCheck.h"

#include <algorithm>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "tessera/common/CommaSepValList.h"
#include "tests/phonebook/Following.h"
#include "tests/phonebook/SpeedDialBuilders.h"

namespace follow_test {

using following::ExtensionRow;
using PhoneBook::PhoneBookDBMgr;

namespace {

class Check {
public:
    Check(const std::vector<Ledger>& ledgers, const std::vector<CEOID>& shared, bool firstHalfMayBeMissed)
        : ledgers_(ledgers), shared_(shared), firstHalfMayBeMissed_(firstHalfMayBeMissed) {
        for (const ExtensionRow& row : following::extensionRows()) {
            EXPECT_TRUE(rows_.emplace(row.contact, row).second) << "a second row: " << row;
        }
    }

    void contacts() {
        std::set<CEOID> known(shared_.begin(), shared_.end());
        for (const Ledger& ledger : ledgers_) {
            for (const ContactNote& note : ledger.contacts) {
                known.insert(note.oid);
                SCOPED_TRACE("contact " + std::to_string(note.oid) + ", number " + std::to_string(note.number));
                note.exists ? livingContact(note) : deadContact(note);
            }
        }
        for (std::size_t i = 0; i < shared_.size(); ++i) {
            ASSERT_TRUE(rows_.contains(shared_[i])) << "a shared contact has lost its row";
            unsigned changed = 0;
            for (const Ledger& ledger : ledgers_)
                changed = std::max(changed, ledger.sharedChanged.at(i));
            SCOPED_TRACE("shared contact " + std::to_string(i) + ", changed in half " + std::to_string(changed));
            expectGroupAmongCategories(shared_[i], mayBeMissed(changed));
        }
        for (const auto& [oid, row] : rows_)
            EXPECT_TRUE(known.contains(oid)) << "a row of nobody: " << row;
    }

    void slots() {
        std::map<unsigned, const ContactNote*> holders;
        for (const Ledger& ledger : ledgers_) {
            for (const ContactNote& note : ledger.contacts) {
                if (note.slot != 0) holders[note.slot] = &note;
            }
        }
        std::set<unsigned> occupied;
        for (const speed_dial::Row& row : speed_dial::rows()) {
            const auto slot = static_cast<unsigned>(row.slot);
            EXPECT_TRUE(occupied.insert(slot).second) << "a second row: " << row;
            ASSERT_TRUE(holders.contains(slot)) << "a slot that was cleared: " << row;
            const ContactNote& holder = *holders[slot];
            EXPECT_EQ(PhoneBookDBMgr::makeCNIP(mobileOf(holder.number)), CString(row.number));
            // The slot and the extension row of a dead contact go together.
            EXPECT_TRUE(holder.exists || mayBeMissed(holder.died)) << "a slot that was freed: " << row;
            EXPECT_TRUE(rows_.contains(holder.oid) && rows_.at(holder.oid).slots == slot) << row;
        }
        for (const auto& [slot, holder] : holders)
            EXPECT_EQ(rows_.contains(holder->oid), occupied.contains(slot)) << "slot " << slot;
    }

    void groups() {
        std::map<DWORD, CString> groups;
        for (const following::Group& group : following::groups())
            EXPECT_TRUE(groups.insert(group).second) << "a second group " << group.first << group.second;
        EXPECT_EQ(1u, groups.erase(fixedGroup));
        for (const Ledger& ledger : ledgers_) {
            for (const CategoryNote& category : ledger.categories)
                groupOf(category, groups);
            for (const SetNote& set : ledger.sets)
                groupMadeByName(set, groups);
        }
        for (const auto& [id, name] : groups)
            ADD_FAILURE() << "a group of nothing: " << id << ' ' << name;
    }

private:
    bool mayBeMissed(unsigned half) const { return firstHalfMayBeMissed_ && half == 0; }

    void livingContact(const ContactNote& note) {
        EXPECT_TRUE(program_.contact(note.oid).get() != nullptr) << "it is gone";
        const bool mustHaveRow = note.rowOfManager || (note.bornFiled && !note.everUnfiled && !mayBeMissed(note.born));
        const bool mayHaveRow = note.rowOfManager || note.everFiled;
        const auto found = rows_.find(note.oid);
        if (found == rows_.end()) {
            EXPECT_FALSE(mustHaveRow) << "it has no row";
            return;
        }
        EXPECT_TRUE(mayHaveRow) << "nothing made a row of it";
        EXPECT_EQ(nameOf(note.number), found->second.name);
        EXPECT_EQ(PhoneBookDBMgr::makeCNIP(mobileOf(note.number)), found->second.telNo);
        EXPECT_EQ(7, found->second.flags);
        EXPECT_EQ(note.slot, found->second.slots);
        expectGroupAmongCategories(note.oid, mayBeMissed(note.changed));
    }

    void deadContact(const ContactNote& note) {
        EXPECT_TRUE(program_.contact(note.oid).get() == nullptr) << "it is still there";
        EXPECT_TRUE(mayBeMissed(note.died) || !rows_.contains(note.oid)) << "its row is still there";
    }

    void expectGroupAmongCategories(CEOID oid, bool mayBeStale) {
        const CString& group = rows_.at(oid).group;
        const auto contact = program_.contact(oid);
        if (contact.get() == nullptr || group.IsEmpty() || mayBeStale) return;
        CStringArray categories;
        common::CommaSepValList(testing_support::textOf(contact, &IContact::get_Categories).c_str())
            .getList(categories);
        EXPECT_NE(categories.end(), std::ranges::find(categories, group)) << group << " of contact " << oid;
    }

    /// Takes the group out when it is as it should be.
    void groupOf(const CategoryNote& category, std::map<DWORD, CString>& groups) {
        const auto found = groups.find(category.id);
        const bool isThere = found != groups.end();
        if (!category.exists && mayBeMissed(category.died) && !isThere) return;
        EXPECT_EQ(category.exists || mayBeMissed(category.died), isThere) << "the group of category " << category.id;
        if (!isThere) return;
        bool isName = false;  // it has the name that the category had when it was followed
        for (unsigned renaming = 0; renaming <= category.renamed; ++renaming)
            isName = isName || found->second == category.name(renaming);
        EXPECT_TRUE(isName) << found->second << " of category " << category.id;
        groups.erase(found);
    }

    static void groupMadeByName(const SetNote& set, std::map<DWORD, CString>& groups) {
        const auto found =
            std::ranges::find_if(groups, [&](const auto& group) { return group.second == setNameOf(set.number); });
        EXPECT_EQ(set.exists, found != groups.end()) << setNameOf(set.number);
        if (found == groups.end()) return;
        EXPECT_GT(found->first, fixedGroup);
        groups.erase(found);
    }

    const std::vector<Ledger>& ledgers_;
    const std::vector<CEOID>& shared_;
    bool firstHalfMayBeMissed_;
    following::OtherProgram program_;
    std::map<CEOID, ExtensionRow> rows_;
};

}  // namespace

void expectTablesFollow(const std::vector<Ledger>& ledgers, const std::vector<CEOID>& shared,
                        bool firstHalfMayBeMissed) {
    Check check(ledgers, shared, firstHalfMayBeMissed);
    check.contacts();
    check.slots();
    check.groups();
}

}  // namespace follow_test
