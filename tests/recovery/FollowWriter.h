#pragma once

#include <memory>
#include <random>
#include <vector>

#include "tests/phonebook/Following.h"
#include "tests/recovery/FollowLedger.h"

namespace follow_test {

/// Changes contacts and categories at random, its own ones and some that all writers share: as another program does,
/// through the contacts model and the categories' database, and through a manager without a window.
class Writer {
public:
    /// On the mounted store, set up.
    Writer(unsigned number, unsigned seed, std::vector<CEOID> shared);

    /// Makes one change. Throws when it fails.
    void change(unsigned half);
    const Ledger& ledger() const { return ledger_; }

private:
    // As another program
    void add();
    void file();
    void fileShared();
    void remove();
    void addCategory();
    void renameCategory();
    void deleteCategory();
    // Through the manager
    void insert();
    void update();
    void erase();
    void setSlot();
    void clearSlot();
    void makeSet();
    void deleteSet();

    unsigned random(unsigned below) { return static_cast<unsigned>(random_() % below); }
    unsigned nextNumber();
    unsigned freeSlot();
    WString anyCategories();
    /// Any that exists and that the condition admits; null when there is none.
    template <class Note, class Condition>
    Note* any(std::vector<Note>& notes, Condition admits);
    ContactNote* anyContact();
    ContactNote& note(CEOID oid, unsigned number, bool isFiled);
    /// Changes a contact and notes what becomes of its categories.
    template <class Change>
    void changing(ContactNote& contact, Change change);
    void noteDeath(ContactNote& contact);

    unsigned number_;
    std::minstd_rand random_;
    std::vector<CEOID> shared_;
    unsigned half_ = 0;
    unsigned made_ = 0;
    PhoneBook::PhoneBookDBMgr manager_;
    following::OtherProgram program_;
    std::unique_ptr<Database::CeDBTable> categories_;
    Ledger ledger_;
};

}  // namespace follow_test
