#pragma once

#include <memory>
#include <span>
#include <string>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Types.h"
#include "tessera/platform/objectstore/Session.h"

namespace Platform {

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
    [[nodiscard]] HRESULT write(CEOID& oid, std::span<const Edit> edits) const;
    [[nodiscard]] HRESULT erase(CEOID oid) const;

private:
    CEOID database_;
    std::uint64_t mountNumber_;
};

/// The result code of a failure of the store: E_INVALIDARG when it refused what it was given.
[[nodiscard]] HRESULT resultOf(DWORD error);

}  // namespace Platform
