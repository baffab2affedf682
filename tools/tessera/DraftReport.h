#pragma once

#include <deque>
#include <map>
#include <string>

#include "Duplicates.h"
#include "Output.h"
#include "Progress.h"
#include "Settings.h"
#include "exchange/ContactDraft.h"

namespace Tool {

/// Tells what becomes of each draft of a file, in their order, and of none before that is durable.
class DraftReport {
public:
    /// `isDryRun`: nothing is written, and what would be is told.
    DraftReport(const Settings& settings, const DraftedFile& file, bool isDryRun);

    void imported(const ContactDraft& draft, DWORD oid);
    void skipped(const ContactDraft& draft, const std::string& why);
    void known(const ContactDraft& draft, const Duplicates::Known& as);
    /// All that was told so far is on the disk.
    void durable();
    /// Tells of what belongs to no one draft, and sums up.
    void finish();

    int durablyImported() const { return durablyImported_; }

private:
    struct Event {
        const ContactDraft* draft;
        DWORD oid;
        std::string skipped;
        DWORD knownAs;
    };

    void tell(const Event& event);
    void tellInJson(const Event& event);
    void tellPeople(const Event& event);
    void line(const std::string& text);

    const Settings& settings_;
    const DraftedFile& file_;
    bool isDryRun_;
    std::deque<Event> pending_;
    std::map<std::string, int> leftOut_;  ///< How often.
    int told_ = 0;
    int imported_ = 0;
    int durablyImported_ = 0;
    int known_ = 0;
    Progress progress_;
};

}  // namespace Tool
