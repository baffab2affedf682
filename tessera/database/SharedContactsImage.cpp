#include "tessera/database/SharedContactsImage.h"

#include <mutex>
#include <shared_mutex>
#include <vector>

#include "tessera/platform/base/TelephoneNumber.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/StoreChanges.h"

namespace Database {

namespace {

/// What a scan looks at in a record; `contact` is filled anew, into the buffers that it has.
const ScannedContact& scanned(const RecordView& record, ScannedContact& contact) {
    contact.oid = record.oid();
    contact.sortKey = record.sortKey();
    contact.name.clear();
    contact.numbers.clear();
    contact.numbersBeforeName = 0;
    contact.categories.reset();
    for (const TextProperty& property : record.texts()) {
        switch (property.id) {
            case ContactProperty::fileAs:
                contact.name = property.text;
                contact.numbersBeforeName = contact.numbers.size();
                break;
            case ContactProperty::categories:
                contact.categories = property.text;
                break;
            case ContactProperty::mobileTelephoneNumber:
            case ContactProperty::homeTelephoneNumber:
            case ContactProperty::businessTelephoneNumber:
            case ContactProperty::pagerNumber:
            case ContactProperty::businessFaxNumber:
                if (!property.text.empty()) contact.numbers.push_back(Platform::reducedNumber(property.text.data()));
                break;
            default:
                break;
        }
    }
    return contact;
}

/// An image, and how far in the change log it has followed the contacts database.
class FollowingImage {
public:
    enum class State { current, behind, unreadable };

    const ContactsImage& image() const { return image_; }

    /// Whether the image holds what the calling thread would read. Remembers what it lacks.
    State compare(DatabaseReader& reader) {
        pending_.clear();
        if (!whole_) return State::behind;
        pendingSequence_ = sequence_;
        switch (reader.changesSince(pendingSequence_, pending_)) {
            case ChangesResult::complete:
                if (!pending_.empty()) return State::behind;
                sequence_ = pendingSequence_;
                return State::current;
            case ChangesResult::tooOld:
                whole_ = false;
                return State::behind;
            case ChangesResult::failed:
                break;
        }
        return State::unreadable;
    }

    /// Puts in what `compare` found it to lack. False when the database cannot be read.
    bool bringUpToDate(DatabaseReader& reader) {
        if (whole_ && pending_.size() <= rebuildAfter && !image_.wasteful()) return putPending(reader);
        // More than the log keeps may have happened meanwhile, or the database have been made anew. That does not go
        // on and on, but in a damaged store.
        constexpr int attempts = 3;
        for (int i = 0; i < attempts; ++i) {
            if (!readAll(reader)) return false;
            // A contact that moved meanwhile was met twice or not at all; it is among the changes since.
            const State state = compare(reader);
            if (whole_) return state == State::current || (state == State::behind && putPending(reader));
        }
        return false;
    }

private:
    /// More changes than this are not put in one by one: each costs a pass over what is in memory, so that
    /// this many cost about as much as reading everything, however many contacts there are.
    static constexpr std::size_t rebuildAfter = 2'500;

    bool putPending(DatabaseReader& reader) {
        whole_ = false;  // until every change is in
        ScannedContact contact;
        for (const StoreChange& change : pending_) {
            image_.remove(change.oid);
            const bool there =
                reader.read(change.oid, [&](const RecordView& record) { image_.put(scanned(record, contact)); });
            if (!there && GetLastError() != ERROR_KEY_DELETED) return false;
        }
        sequence_ = pendingSequence_;
        whole_ = true;
        return true;
    }

    bool readAll(DatabaseReader& reader) {
        whole_ = false;
        image_.clear();
        ScannedContact contact;
        whole_ = reader.readAll(sequence_, [&](const RecordView& record) { image_.append(scanned(record, contact)); });
        image_.fit();
        return whole_;
    }

    ContactsImage image_;
    std::uint64_t sequence_ = 0;
    bool whole_ = false;                ///< The image is complete as of sequence_.
    std::vector<StoreChange> pending_;  ///< What it lacks of the changes up to pendingSequence_.
    std::uint64_t pendingSequence_ = 0;
};

struct SharedImage {
    std::shared_mutex mutex;
    DatabaseReader reader{szContactsDatabase, ContactProperty::fileAs};
    FollowingImage following;
};

SharedImage& sharedImage() {
    static SharedImage image;
    return image;
}

/// Searches what the thread's open batch has made of the contacts; no other thread may see that yet.
bool searchWithinBatch(SharedImage& shared, const std::function<void(const ContactsImage&)>& search) {
    FollowingImage own = shared.following;
    if (!own.bringUpToDate(shared.reader)) return false;
    search(own.image());
    return true;
}

}  // namespace

bool withContactsImage(const std::function<void(const ContactsImage&)>& search) {
    /// When the calling thread last found the shared image current.
    thread_local StoreStamp current;

    SharedImage& shared = sharedImage();
    {
        const std::shared_lock lock(shared.mutex);
        if (current != StoreStamp{} && shared.reader.stamp() == current) {
            search(shared.following.image());
            return true;
        }
    }
    const std::unique_lock lock(shared.mutex);
    const StoreStamp now = shared.reader.stamp();
    const FollowingImage::State state = shared.following.compare(shared.reader);
    if (state == FollowingImage::State::unreadable) return false;
    if (state == FollowingImage::State::behind) {
        if (shared.reader.inBatch()) return searchWithinBatch(shared, search);
        if (!shared.following.bringUpToDate(shared.reader)) return false;
    }
    current = now;
    search(shared.following.image());
    return true;
}

}  // namespace Database
