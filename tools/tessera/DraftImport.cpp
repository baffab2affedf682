#include "DraftImport.h"

#include <algorithm>
#include <string>

#include "Categories.h"
#include "Failure.h"
#include "Numbers.h"
#include "Records.h"
#include "exchange/CategoryTexts.h"
#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

using PhoneBook::PBRecord;

constexpr int draftsPerBatch = 1'000;
constexpr std::chrono::milliseconds timePerBatch{250};

void separateCodes(PBRecord& record) {
    for (const Field& field : fields) {
        if (!PhoneBook::PhoneBookDBMgr::isTelNoAttr(field.attribute)) continue;
        CString& number = record.*field.model().text;
        number = withSeparatedCode(number);
    }
}

bool fits(const PBRecord& record) {
    const TextLengths lengths = lengthsOf(record);
    return canBeStored(lengths, lengths[PhoneBook::PBDBATTR_BODY] + lengths[PhoneBook::PBDBATTR_CATEGORIES]);
}

}  // namespace

void refuseTooLong(std::vector<ContactDraft>& drafts) {
    for (ContactDraft& draft : drafts) {
        if (draft.problem.empty() && !fits(draft.record)) draft.problem = "its values are longer than a contact can be";
    }
}

DraftImport::DraftImport(Store* store, Duplicates* known, DraftReport& report)
    : store_(store), known_(known), report_(report) {}

void DraftImport::run(std::vector<ContactDraft>& drafts) {
    for (ContactDraft& draft : drafts) {
        take(draft);
        commitWhenFull();
    }
    commit();
}

void DraftImport::take(ContactDraft& draft) {
    ++taken_;
    if (!draft.problem.empty()) return report_.skipped(draft, draft.problem);
    separateCodes(draft.record);
    if (known_ != nullptr) {
        if (const auto as = known_->find(draft.record)) return report_.known(draft, *as);
    }
    const DWORD oid = store_ != nullptr ? insert(draft.record) : 0;
    if (known_ != nullptr)
        known_->add(draft.record, {.oid = oid, .place = draft.number != 0 ? draft.number : draft.line});
    report_.imported(draft, oid);
}

/// The phone book itself makes the categories of the group, and keeps no notes.
DWORD DraftImport::insert(PBRecord record) {
    if (!batch_) {
        began_ = std::chrono::steady_clock::now();
        batch_.emplace();
        require(batch_->begun());
    }
    const CString ofGroup = asCategory(record.strGroup);
    const bool hasCategories = (record.dwCITypeMask & fieldOf(PhoneBook::PBDBATTR_CATEGORIES).mask()) != 0;
    const CString categories = hasCategories ? record.strCategories : ofGroup;
    const CString notes = record.strBody;
    DWORD oid = 0;
    require(SUCCEEDED(store_->manager().insertPBRecord(record, &oid)) && oid != 0);
    const bool isAllThere = categories == ofGroup && notes.IsEmpty();
    require(isAllThere || writeCategories(oid, categories, &notes));
    return oid;
}

void DraftImport::require(bool done) {
    if (done) return;
    const std::string why = storeErrorText(store_->path());
    ObjectStoreBatch::giveUp();
    throw Failure("the import stopped; " + std::to_string(report_.durablyImported()) +
                  " contacts of the file are in the phone book: " + why);
}

void DraftImport::commitWhenFull() {
    const bool isOld = batch_ && std::chrono::steady_clock::now() - began_ >= timePerBatch;
    if (taken_ >= draftsPerBatch || isOld) commit();
}

void DraftImport::commit() {
    if (batch_) {
        require(batch_->end());
        batch_.reset();
    }
    taken_ = 0;
    report_.durable();
}

}  // namespace Tool
