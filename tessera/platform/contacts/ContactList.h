#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "tessera/platform/contacts/ContactStore.h"
#include "tessera/platform/contacts/Restriction.h"
#include "tessera/platform/objectstore/OrderCursor.h"

namespace Platform {

/// What a contact must pass to belong to a list: all of these.
using Restrictions = std::vector<std::shared_ptr<const Restriction>>;

bool passes(const Restrictions& restrictions, std::string_view packed);

/// Walks the contacts in an order until `visit` answers false. Whoever writes meanwhile disturbs nothing:
/// a contact that stays where it is in the order is met exactly once.
[[nodiscard]] DWORD walkContacts(const ContactStore& store, const SortOrder& order,
                                 const std::function<bool(const Place&, std::string_view packed)>& visit);

/// The contacts of a collection, as the store has them at each call.
class ContactList {
public:
    virtual ~ContactList() = default;

    [[nodiscard]] virtual DWORD count(std::size_t& count) = 0;
    /// The contact at a position counted from 0; `packed` is valid until the list is next used.
    /// ERROR_NO_MORE_ITEMS beyond the last.
    [[nodiscard]] virtual DWORD at(std::size_t position, CEOID& oid, std::string_view& packed) = 0;
};

/// All contacts. Nothing is listed: the order itself is asked.
class WholeList final : public ContactList {
public:
    WholeList(std::shared_ptr<ContactStore> store, const SortOrder& order)
        : store_(std::move(store)), cursor_(store_->database(), order) {}

    DWORD count(std::size_t& count) override;
    DWORD at(std::size_t position, CEOID& oid, std::string_view& packed) override;

private:
    std::shared_ptr<ContactStore> store_;
    OrderCursor cursor_;
    bool opened_ = false;
    std::optional<std::size_t> counted_;
    StoreMoment countedAt_;
};

}  // namespace Platform
