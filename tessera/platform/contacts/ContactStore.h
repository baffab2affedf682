#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Types.h"
#include "tessera/platform/objectstore/Session.h"

namespace Platform {

/// What is to be written into a contact's record.
class ContactEdits {
public:
    void set(CEPROPID property, std::string bytes) { edits_.push_back({property, std::move(bytes), false}); }
    void remove(CEPROPID property) { edits_.push_back({property, {}, true}); }
    bool isEmpty() const { return edits_.empty(); }
    /// Valid while this lives unchanged.
    std::vector<Edit> views() const;

private:
    struct OwnedEdit {
        CEPROPID property;
        std::string bytes;
        bool remove;
    };
    std::vector<OwnedEdit> edits_;
};

/// The "Contacts Database" of the store that was mounted when this was made, shared by the objects that
/// come from one session. Once another store is mounted everything fails: an identifier of the one means
/// nothing in the other.
class ContactStore {
public:
    /// Null when there is no store, or no such database in it, to be had.
    static std::shared_ptr<ContactStore> open();

    ContactStore(CEOID database, std::uint64_t mountNumber) : database_(database), mountNumber_(mountNumber) {}

    /// The calling thread's connection; null when the store cannot be had any more.
    Session* session() const;
    CEOID database() const { return database_; }

    /// E_FAIL when there is no such contact.
    [[nodiscard]] HRESULT read(CEOID oid, std::string& packed) const;
    /// Changes a contact, or makes one when `oid` is 0, which then receives its identifier.
    [[nodiscard]] HRESULT write(CEOID& oid, const ContactEdits& edits) const;
    [[nodiscard]] HRESULT erase(CEOID oid) const;

private:
    CEOID database_;
    std::uint64_t mountNumber_;
};

/// The result code of a failure of the store: E_INVALIDARG when it refused what it was given.
[[nodiscard]] HRESULT resultOf(DWORD error);

}  // namespace Platform
