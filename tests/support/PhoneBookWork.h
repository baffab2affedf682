#pragma once

#include <functional>
#include <random>
#include <string>
#include <string_view>

#include "tessera/phonebook/PhoneBookDBMgr.h"

// Work on a phone book that nobody thought up: any operation of the manager that writes, with any parameters. The
// operations leave what StoreContents.h says must hold of every phone book as it was.

namespace testing_support {

/// Where choices come from. The same choices on equal stores make the same work.
class Choices {
public:
    virtual ~Choices() = default;
    /// A number from 0 to `count` - 1; `count` is 1 to 65,536.
    virtual unsigned below(unsigned count) = 0;
};

/// Choices at random, the same for the same seed everywhere.
class RandomChoices : public Choices {
public:
    explicit RandomChoices(unsigned seed) : random_(seed) {}
    unsigned below(unsigned count) override { return static_cast<unsigned>(random_() % count); }

private:
    std::mt19937 random_;
};

/// The choices that an input's bytes make: a byte each, two above 256. Behind its end all are 0.
class InputChoices : public Choices {
public:
    explicit InputChoices(std::string_view input) : rest_(input) {}
    bool atEnd() const { return rest_.empty(); }
    unsigned below(unsigned count) override;

private:
    unsigned byte();

    std::string_view rest_;
};

/// One operation with its parameters, not done yet.
struct PhoneBookOperation {
    std::string description;  ///< For the message of a failed test.
    std::function<HRESULT(PhoneBook::PhoneBookDBMgr& manager)> perform;
};

/// Chooses an operation for the mounted store as it now is: reads it, and writes nothing.
///
/// Done on an open phone book it is one unit of the store: after a crash there whole or not at all. What it does
/// follows from its parameters, the store, and what the manager did before (its cache, and where its tables stand):
/// never from the clock, addresses, or the order of a hash. It may fail by what it is asked, as for a contact that
/// does not exist. The manager is open behind it.
PhoneBookOperation anyPhoneBookOperation(Choices& choices);

/// An operation that was done.
struct PhoneBookDeed {
    std::string description;
    HRESULT result = S_OK;

    friend bool operator==(const PhoneBookDeed&, const PhoneBookDeed&) = default;
};

/// Chooses an operation and does it.
PhoneBookDeed doAnyPhoneBookOperation(PhoneBook::PhoneBookDBMgr& manager, Choices& choices);

}  // namespace testing_support
