#include "tessera/platform/contacts/ContactList.h"

#include <algorithm>
#include <optional>
#include <span>

#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/RecordCursor.h"

namespace Platform {

bool passes(const Restrictions& restrictions, std::string_view packed) {
    return std::ranges::all_of(restrictions, [&](const auto& restriction) { return restriction->matches(packed); });
}

DWORD walkContacts(const ContactStore& store, const SortOrder& order,
                   const std::function<bool(const Place&, std::string_view packed)>& visit) {
    Session* session = store.session();
    if (session == nullptr) return GetLastError();
    RecordCursor cursor(*session);
    if (const DWORD error = cursor.open(szContactsDatabase, order); error != ERROR_SUCCESS) return error;
    if (cursor.database() != store.database()) return ERROR_FILE_NOT_FOUND;
    std::span<const Entry> block;
    do {
        if (const DWORD error = cursor.nextBlock(block); error != ERROR_SUCCESS) return error;
        for (const Entry& entry : block) {
            if (!visit(entry.place, entry.packed)) return ERROR_SUCCESS;
        }
    } while (!block.empty());
    return ERROR_SUCCESS;
}

DWORD WholeList::count(std::size_t& count) {
    Session* session = store_->session();
    if (session == nullptr) return GetLastError();
    const StoreMoment now = session->moment();
    if (!counted_ || countedAt_ != now) {
        DatabaseInfo info;
        const DWORD error = session->engine().databaseInfo(store_->database(), info);
        if (error != ERROR_SUCCESS) return error;
        counted_ = info.records;
        countedAt_ = now;
    }
    count = *counted_;
    return ERROR_SUCCESS;
}

DWORD WholeList::at(std::size_t position, CEOID& oid, std::string_view& packed) {
    Session* session = store_->session();
    if (session == nullptr) return GetLastError();
    if (!opened_) {
        if (const DWORD error = cursor_.open(*session); error != ERROR_SUCCESS) return error;
        opened_ = true;
    }
    std::optional<StoreMoment> tried;
    DWORD error = ERROR_KEY_DELETED;
    while (error == ERROR_KEY_DELETED) {  // deleted between the seek and the read: another one is there now
        const StoreMoment now = session->moment();
        if (tried == now) return ERROR_FILE_CORRUPT;  // by nobody: its place leads nowhere
        tried = now;
        error = cursor_.toIndex(*session, position);
        if (error == ERROR_SEEK) return ERROR_NO_MORE_ITEMS;
        if (error != ERROR_SUCCESS) return error;
        error = cursor_.read(*session, packed);
    }
    oid = cursor_.record();
    return error;
}

}  // namespace Platform
