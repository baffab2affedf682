#include "tests/recovery/CrowdMember.h"

#include <algorithm>
#include <stdexcept>

namespace crowd_test {

using Clock = std::chrono::steady_clock;
using namespace PhoneBook;
using testing_support::contact;

namespace {

constexpr DWORD wholeRecord = 0x007F0FFF;

}  // namespace

void Told::sayTo(testing_support::Line& line) const {
    line.say(figures);
    line.say(tooLong);
    line.say(increments);
    line.say(contacts);
    line.say(groups);
}

Told Told::hearFrom(testing_support::Line& line) {
    Told told;
    told.figures = line.hear<Figures>();
    told.tooLong = line.hear<unsigned>();
    told.increments = line.hear<std::array<unsigned, counters>>();
    told.contacts = line.hearAll<MadeContact>();
    told.groups = line.hearAll<unsigned>();
    return told;
}

std::array<DWORD, counters> addCounters(testing_support::OpenPhoneBook& book) {
    std::array<DWORD, counters> oids{};
    for (DWORD& oid : oids)
        oid = book.add(contact().name(TEXT("Counter")).bell(TEXT("none")));
    return oids;
}

Member::Member(unsigned number, const Crowd& crowd, const std::array<DWORD, counters>& counterOids)
    : number_(number), crowd_(crowd), counterOids_(counterOids), random_(number) {}

void Member::call() {
    SetLastError(ERROR_SUCCESS);
    const auto began = Clock::now();
    const bool isDone = callOnce();
    const auto took = Clock::now() - began;
    ++told_.figures.calls;
    told_.figures.refused += isDone ? 0 : 1;
    told_.figures.longest = std::max(told_.figures.longest, std::chrono::ceil<std::chrono::milliseconds>(took));
    told_.tooLong += took > crowd_.options.writerWait + crowd_.margin ? 1 : 0;
    if (!isDone && took < crowd_.options.writerWait) throw std::runtime_error("it gave up before its time");
}

bool Member::callOnce() {
    static constexpr bool (Member::*calls[])() = {&Member::insert,    &Member::insert, &Member::rename,
                                                  &Member::increment, &Member::look,   &Member::increment,
                                                  &Member::erase,     &Member::look,   &Member::makeGroup};
    return (this->*calls[random_() % std::size(calls)])();
}

bool Member::done(HRESULT result) {
    if (result == S_OK) return true;
    if (GetLastError() == ERROR_LOCK_VIOLATION) return false;
    throw std::runtime_error("result " + std::to_string(result) + ", error " + std::to_string(GetLastError()));
}

MadeContact* Member::anyContact() {
    return told_.contacts.empty() ? nullptr : &told_.contacts[random_() % told_.contacts.size()];
}

bool Member::insert() {
    MadeContact made{.number = nextNumber()};
    PBRecord record = contact().name(made.name()).mobile(made.mobile()).group(TEXT("Crowd")).record();
    if (!done(book_->insertPBRecord(record, &made.oid))) return false;
    told_.contacts.push_back(made);
    return true;
}

bool Member::rename() {
    MadeContact* picked = anyContact();
    if (picked == nullptr) return insert();
    MadeContact renamed = *picked;
    ++renamed.renamed;
    PBRecord record = contact().name(renamed.name()).mobile(renamed.mobile()).bell(TEXT("ding")).record();
    if (!done(book_->updatePBRecord(picked->oid, record))) return false;
    *picked = renamed;
    return true;
}

bool Member::erase() {
    const MadeContact* picked = anyContact();
    if (picked == nullptr) return insert();
    if (!done(book_->deletePBRecord(picked->oid))) return false;
    told_.contacts.erase(told_.contacts.begin() + (picked - told_.contacts.data()));
    return true;
}

/// Reads, adds one, and writes, with nobody in between.
bool Member::increment() {
    const std::size_t which = random_() % counters;
    ObjectStoreBatch batch;
    if (!batch.begun()) return done(E_FAIL);
    PBRecord record;
    record.dwCITypeMask = wholeRecord;
    const HRESULT read = book_->queryCallerInfo(counterOids_[which], &record);
    if (FAILED(read)) return done(read);
    ++record.dwCallingScreen;
    record.dwCITypeMask = wholeRecord;
    const HRESULT written = book_->updatePBRecord(counterOids_[which], record);
    if (!done(batch.end() ? written : E_FAIL)) return false;
    ++told_.increments[which];
    return true;
}

bool Member::makeGroup() {
    const unsigned made = nextNumber();
    PBGroupInfo group;
    group.strName = nameOfGroup(made);
    if (!done(book_->insertAvailablePBGroup(&group, true))) return false;
    told_.groups.push_back(made);
    return true;
}

/// What it was told is done, it sees itself.
bool Member::look() {
    const MadeContact* picked = anyContact();
    if (picked == nullptr) return insert();
    PBRecord record;
    record.dwCITypeMask = 0x5;
    if (!done(book_->queryCallerInfo(picked->oid, &record))) return false;
    if (record.strName == CString(picked->name())) return true;
    throw std::runtime_error("a contact has another name than it was given");
}

void keepStoreBusy(testing_support::Line& parent) {
    constexpr std::chrono::milliseconds long_{60};
    testing_support::OpenPhoneBook book;
    while (true) {
        ObjectStoreBatch batch;
        if (!batch.begun()) continue;
        parent.say('u');
        for (const auto end = Clock::now() + long_; Clock::now() < end;) {
            DWORD oid = book.add(contact().name(TEXT("Busy")).group(TEXT("Busy")));
            if (FAILED(book->deletePBRecord(oid))) throw std::runtime_error("it cannot be deleted");
        }
        if (!batch.end()) throw std::runtime_error("its unit was not kept");
    }
}

}  // namespace crowd_test
