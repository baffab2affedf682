#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tessera/platform/contacts/ContactList.h"

namespace Platform {

/// The contacts that pass some restrictions.
///
/// Listed by one walk over all contacts. As long as the database's time of modification stands, the list
/// serves as it is; after that, the contacts that the change log names are judged anew, one by one, so that
/// deleting the matches one after another does not cost a walk for each. With `keepRecords`, the records
/// that the walk read are kept for whoever asks for the items.
class MatchList final : public ContactList {
public:
    MatchList(std::shared_ptr<ContactStore> store, const SortOrder& order, Restrictions restrictions, bool keepRecords)
        : store_(std::move(store)), order_(order), restrictions_(std::move(restrictions)), keepRecords_(keepRecords) {}

    DWORD count(std::size_t& count) override;
    DWORD at(std::size_t position, CEOID& oid, std::string_view& packed) override;

private:
    struct Member {
        Place place;
        std::optional<std::string> packed;
    };
    /// What the list was made of: the store's state, and how far the change log was followed.
    struct Stamp {
        StoreMoment moment;
        std::uint64_t modified = 0;
        std::uint64_t givenUpBatches = 0;
        std::uint64_t sequence = 0;
    };

    [[nodiscard]] DWORD bringUpToDate(Session& session);
    static bool fewChangesAfter(Session& session, std::uint64_t sequence);
    [[nodiscard]] DWORD listAnew(Session& session, Stamp& stamp);
    [[nodiscard]] DWORD followChanges(Session& session, Stamp& stamp);
    [[nodiscard]] DWORD judgeAnew(Session& session, CEOID record);
    void insert(const Place& place, std::string_view packed);
    void remove(CEOID record);
    std::optional<std::string> keptRecord(std::string_view packed);

    std::shared_ptr<ContactStore> store_;
    SortOrder order_;
    Restrictions restrictions_;
    bool keepRecords_;

    OrderId orderId_ = 0;
    std::vector<Member> members_;  ///< Ascending by place, also where the order is a descending one.
    std::size_t keptBytes_ = 0;
    std::optional<Stamp> stamp_;
    std::string single_;  ///< A record read by itself.
};

}  // namespace Platform
