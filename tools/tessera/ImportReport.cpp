#include "ImportReport.h"

#include <cstdio>
#include <iostream>

#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

std::string refusal(const char* what, HRESULT result) {
    char text[64];
    std::snprintf(text, sizeof text, "%s (0x%08x)", what, static_cast<unsigned>(result));
    return text;
}

}  // namespace

ImportReport::ImportReport(const Settings& settings, const ImportFile& file, bool isDryRun)
    : settings_(settings),
      file_(file),
      isDryRun_(isDryRun),
      progress_(file.lines(), "lines", progressIsWanted(settings) && !isDryRun) {}

void ImportReport::lineTried(int line, HRESULT result, CEOID oid) {
    pending_.push_back({line, result, oid});
}

void ImportReport::linesCommitted(int line) {
    for (; !pending_.empty() && pending_.front().line <= line; pending_.pop_front())
        tell(pending_.front());
    std::cout.flush();
    progress_.show(told_ - 1);
}

void ImportReport::tell(const Tried& tried) {
    moveToNextLine();
    // A contact that was refused may have left its extension row, which then gives the result.
    if (tried.oid == 0) return tellSkipped(refusal("the phone book did not take it", tried.result));
    if (FAILED(tried.result)) return tellSkipped(refusal("the phone book took only a part of it", tried.result));
    ++imported_;
    tellImported(tried.oid);
}

/// Steps to the next line of the source that was handed to the phone book, telling of those before it.
void ImportReport::moveToNextLine() {
    ++told_;
    while (nextSkipped_ < file_.skipped().size() && file_.skipped()[nextSkipped_].first == told_) {
        const SkippedLines& skipped = file_.skipped()[nextSkipped_++];
        for (int i = 0; i < skipped.count; ++i, ++told_)
            tellSkipped(skipped.why);
    }
}

void ImportReport::tellImported(CEOID oid) {
    const std::string note = takeNote();
    if (settings_.json) {
        Json object{{"line", told_}};
        if (!isDryRun_) object["oid"] = oid;
        if (!note.empty()) object["note"] = note;
        return writeJson(object);
    }
    if (note.empty()) return;
    progress_.clear();
    std::cout << "line " << told_ << ": " << note << '\n';
}

/// The note on the line told of; empty when there is none.
std::string ImportReport::takeNote() {
    const std::vector<LineNote>& notes = file_.notes();
    while (nextNote_ < notes.size() && notes[nextNote_].line < told_)
        ++nextNote_;
    return nextNote_ < notes.size() && notes[nextNote_].line == told_ ? notes[nextNote_].text : std::string();
}

void ImportReport::tellSkipped(const std::string& why) {
    if (settings_.json) return writeJson({{"line", told_}, {"skipped", why}});
    progress_.clear();
    std::cout << "line " << told_ << " skipped: " << why << '\n';
}

void ImportReport::tellAll() {
    int handedOver = file_.lines();
    for (const SkippedLines& skipped : file_.skipped())
        handedOver -= skipped.count;
    for (; imported_ < handedOver; ++imported_) {
        moveToNextLine();
        tellImported(0);
    }
}

void ImportReport::finish() {
    moveToNextLine();
    progress_.clear();
    const int lines = file_.lines();
    if (settings_.json) {
        Json sums{{"imported", imported_}, {"lines", lines}, {"skipped", lines - imported_}};
        if (isDryRun_) sums["dryRun"] = true;
        return writeJson(sums);
    }
    std::cout << (isDryRun_ ? "would import " : "imported ") << imported_ << " of " << lines
              << (lines == 1 ? " line" : " lines") << '\n';
}

}  // namespace Tool
