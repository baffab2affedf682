#pragma once

#include <deque>
#include <string>

#include "ImportFile.h"
#include "Output.h"
#include "Progress.h"
#include "Settings.h"
#include "tessera/phonebook/ImportListener.h"

namespace Tool {

/// Tells, while an import goes on, what became of each line of the source: in its order, and of none
/// before that is durable. Lines for people name only what was skipped.
class ImportReport : public PhoneBook::ImportListener {
public:
    /// `isDryRun`: nothing is written, and what would be is told.
    ImportReport(const Settings& settings, const ImportFile& file, bool isDryRun);

    void lineTried(int line, HRESULT result, CEOID oid) override;
    void linesCommitted(int line) override;

    /// In a dry run: tells of all lines up to the last that would be imported.
    void tellAll();
    /// Tells of the lines behind the last durable one that were skipped, and sums up.
    void finish();
    int imported() const { return imported_; }

private:
    struct Tried {
        int line;  ///< Of the clean file.
        HRESULT result;
        CEOID oid;
    };

    void tell(const Tried& tried);
    void moveToNextLine();
    void tellImported(CEOID oid);
    void tellSkipped(const std::string& why);
    std::string takeNote();

    const Settings& settings_;
    const ImportFile& file_;
    bool isDryRun_;
    std::deque<Tried> pending_;
    std::size_t nextSkipped_ = 0;  ///< Among the file's skipped lines.
    std::size_t nextNote_ = 0;     ///< Among the file's notes.
    int told_ = 1;                 ///< The source line last told of; the header needs no telling.
    int imported_ = 0;
    Progress progress_;
};

}  // namespace Tool
