#pragma once

#include <array>
#include <chrono>
#include <map>
#include <ostream>

#include "tessera/platform/base/Unicode.h"
#include "tests/support/MountKinds.h"

// Two managers at work on one store at once: until the time is up each inserts, updates and deletes contacts of its
// own. At the end the store must hold, contact by contact, what each of them says it has left there.

namespace testing_support {

/// A contact as a worker has left it.
struct LeftContact {
    WString name;
    WString mobile;
    WString group;  ///< Empty: it has no extension row.

    friend bool operator==(const LeftContact&, const LeftContact&) = default;
    friend std::ostream& operator<<(std::ostream& out, const LeftContact& contact) {
        return out << utf8Of(contact.name) << '|' << utf8Of(contact.mobile) << '|' << utf8Of(contact.group);
    }
};

/// What a worker has done, and the contacts that it has left, by their identifiers.
struct WorkReport {
    bool succeeded = false;
    unsigned inserted = 0;
    unsigned updated = 0;
    unsigned deleted = 0;
    std::map<DWORD, LeftContact> left;
};

constexpr unsigned workers = 2;
using WorkReports = std::array<WorkReport, workers>;

/// Works on the mounted store with a manager of its own.
WorkReport workFor(std::chrono::seconds howLong, unsigned worker);

/// The mounted store holds what the reports say, and nothing else.
void expectHeld(const WorkReports& reports);

/// Each of two threads works with its own manager.
void expectTwoThreadsLeaveWhatTheySay(const MountKind& kind, std::chrono::seconds howLong);

}  // namespace testing_support
