#pragma once

#include <array>
#include <chrono>
#include <random>
#include <string>
#include <vector>

#include "tests/recovery/Crowd.h"
#include "tests/support/Builders.h"
#include "tests/support/Forked.h"

namespace crowd_test {

inline constexpr std::size_t counters = 3;

inline WString digits(std::size_t number) {
    const std::string text = std::to_string(number);
    return {text.begin(), text.end()};
}

/// A contact as the program that made it has left it.
struct MadeContact {
    DWORD oid = 0;
    unsigned number = 0;   ///< Of all contacts.
    unsigned renamed = 0;  ///< How often.

    WString name() const { return TEXT("Person ") + digits(number) + TEXT('.') + digits(renamed); }
    WString mobile() const { return TEXT("010-") + digits(number); }
};

/// What one program was told that it has done.
struct Told {
    Figures figures;
    unsigned tooLong = 0;  ///< Calls that took longer than they may.
    std::array<unsigned, counters> increments{};
    std::vector<MadeContact> contacts;
    std::vector<unsigned> groups;  ///< By number.

    void sayTo(testing_support::Line& line) const;
    static Told hearFrom(testing_support::Line& line);
};

inline CString nameOfGroup(unsigned number) {
    return CString(TEXT("Set ") + digits(number));
}

/// Adds the contacts whose calling screens are the counters.
std::array<DWORD, counters> addCounters(testing_support::OpenPhoneBook& book);

/// One program of the crowd, on the mounted store.
class Member {
public:
    Member(unsigned number, const Crowd& crowd, const std::array<DWORD, counters>& counterOids);

    /// Makes one call of the phone book, or of a few in one unit. Throws when it fails other than by waiting in vain.
    void call();
    const Told& told() const { return told_; }

private:
    bool insert();
    bool rename();
    bool erase();
    bool increment();
    bool makeGroup();
    bool look();

    /// The same, but for the time that it takes.
    bool callOnce();
    /// False when it was refused.
    static bool done(HRESULT result);
    MadeContact* anyContact();
    unsigned nextNumber() { return number_ * 100'000 + ++made_; }

    unsigned number_;
    const Crowd& crowd_;
    std::array<DWORD, counters> counterOids_;
    std::mt19937 random_;
    unsigned made_ = 0;
    testing_support::OpenPhoneBook book_;
    Told told_;
};

/// Holds the store for 60 ms, again and again, and tells when it has it, until it is killed.
[[noreturn]] void keepStoreBusy(testing_support::Line& parent);

}  // namespace crowd_test
