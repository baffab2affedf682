#pragma once

#include <chrono>
#include <optional>

#include "DraftReport.h"
#include "Duplicates.h"
#include "Store.h"
#include "exchange/ContactDraft.h"

namespace Tool {

/// Says of those that are too long to be contacts that they are.
void refuseTooLong(std::vector<ContactDraft>& drafts);

/// Puts drafts into the phone book, whoever made them.
class DraftImport {
public:
    /// Without a store nothing is written, and what would be is reported. `known` null: everybody is new.
    DraftImport(Store* store, Duplicates* known, DraftReport& report);

    /// Commits as it goes along, often enough that other writers get their turn. Throws a Failure that says how many
    /// contacts are there when the store fails.
    void run(std::vector<ContactDraft>& drafts);

private:
    void take(ContactDraft& draft);
    DWORD insert(PhoneBook::PBRecord record);
    void require(bool done);
    void commitWhenFull();
    void commit();

    Store* store_;
    Duplicates* known_;
    DraftReport& report_;
    std::optional<ObjectStoreBatch> batch_;
    std::chrono::steady_clock::time_point began_;
    int taken_ = 0;  ///< Since the last commit.
};

}  // namespace Tool
