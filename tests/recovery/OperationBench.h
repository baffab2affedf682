#pragma once

#include <memory>
#include <string>
#include <utility>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/support/PlaceInMemory.h"
#include "tests/support/StoreContents.h"
#include "tests/support/TemporaryStore.h"

// What each operation of the manager is tried on: the same small phone book every time.

namespace recovery {

/// Something that goes wrong at a chosen place.
class Failure {
public:
    virtual ~Failure() = default;
    /// Between these two it may go wrong.
    virtual void resume() = 0;
    virtual void pause() = 0;
    virtual bool happened() const = 0;
};

/// Who and what is in the phone book, by identifier.
struct Cast {
    DWORD kim = 0;   ///< In the group "Family", with three numbers, a tone, and slots 2 and 3.
    DWORD lee = 0;   ///< In the group "Family", with slot 5.
    DWORD park = 0;  ///< Has no extension row.
    DWORD choi = 0;  ///< In the group "Work"; filed under another category too.

    // Changes by other programs that nobody has followed yet.
    DWORD han = 0;     ///< Has categories but no extension row.
    DWORD jung = 0;    ///< Filed under "Chess" alone, and no longer under the group that its row says.
    DWORD yoon = 0;    ///< Gone, but for its row and slot 9.
    DWORD sports = 0;  ///< A category without a group.
    DWORD work = 0;    ///< The category of the group "Work".

    DWORD kimsRow = 0;
    DWORD slotRow = 0;  ///< Of slot 5.
    DWORD familyRow = 0;
    DWORD call = 0;
};

/// A store's file as it is before an operation.
struct PreparedStore {
    std::string bytes;
    Cast cast;
};

/// A manager on a mounted copy of the prepared store.
class OperationBench {
public:
    explicit OperationBench(const PreparedStore& prepared);
    ~OperationBench();
    OperationBench(const OperationBench&) = delete;
    OperationBench& operator=(const OperationBench&) = delete;

    PhoneBook::PhoneBookDBMgr& manager() { return *manager_; }
    /// Does something that may fail. All else of a test may not, and so is done outside of this.
    template <class Work>
    auto during(Work&& work) {
        const Exposed exposed(failure_);
        return std::forward<Work>(work)(*manager_);
    }
    /// What may go wrong from now on; null: nothing.
    void setFailure(Failure* failure) { failure_ = failure; }
    const Cast& cast() const { return cast_; }
    /// A file for an import.
    CString file(const char* name, WStringView text) const;

    /// Another program commits something that changes nothing, so that whatever SQLite has read before counts no
    /// more, and every page is read anew.
    void forgetPages() const;
    /// Mounts the store again, as another process would.
    void remount() const;
    std::string path() const { return (folder_ / "store.db").string(); }

private:
    class Exposed {
    public:
        explicit Exposed(Failure* failure) : failure_(failure) {
            if (failure_ != nullptr) failure_->resume();
        }
        ~Exposed() {
            if (failure_ != nullptr) failure_->pause();
        }
        Exposed(const Exposed&) = delete;
        Exposed& operator=(const Exposed&) = delete;

    private:
        Failure* failure_;
    };

    testing_support::TemporaryFolder folder_{testing_support::placeInMemory()};
    Cast cast_;
    Failure* failure_ = nullptr;
    std::unique_ptr<PhoneBook::PhoneBookDBMgr> manager_ = std::make_unique<PhoneBook::PhoneBookDBMgr>();
};

/// What an operation works on: the store, and the manager's cache of slots.
struct BenchState {
    testing_support::StoreContents store;
    std::string cache;

    friend bool operator==(const BenchState&, const BenchState&) = default;
};

BenchState stateOf(OperationBench& bench);

/// What there is of difference, for the message of a failed test.
std::string differencesBetween(const BenchState& expected, const BenchState& found);

/// Makes the phone book. `alter`, unless null, then changes it for one operation.
PreparedStore prepareStore(void (*alter)(PhoneBook::PhoneBookDBMgr& manager));

}  // namespace recovery
