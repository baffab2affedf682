#include "DraftReport.h"

#include <cctype>
#include <iostream>
#include <utility>

#include "DisplayText.h"
#include "Records.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

std::string placeOf(const ContactDraft& draft) {
    const std::string line = "line " + std::to_string(draft.line);
    return draft.number == 0 ? line : "card " + std::to_string(draft.number) + " (" + line + ")";
}

Json placeInJson(const ContactDraft& draft) {
    Json object = Json::object();
    if (draft.number != 0) object["card"] = draft.number;
    object["line"] = draft.line;
    return object;
}

/// What there is of the contact, as it stands in a sentence.
std::string summaryOf(const ContactDraft& draft) {
    const Contact contact{0, draft.record};
    std::string text = contact.has(fieldOf(PhoneBook::PBDBATTR_NAME)) ? "" : "(no name)";
    for (const Field& field : fields) {
        if (!contact.has(field) || field.model().number != nullptr) continue;  // numbers tell people nothing
        const bool isName = field.attribute == PhoneBook::PBDBATTR_NAME;
        if (!isName) text += std::string(", ") + field.key + ' ';
        text += fieldText(contact, field);
    }
    return text;
}

Json contactInJson(const ContactDraft& draft) {
    Json object = jsonOf(Contact{0, draft.record});
    object.erase("oid");
    return object;
}

std::string whereKnown(const ContactDraft& draft, const Duplicates::Known& as) {
    if (as.place == 0) return "is in the phone book already, as contact " + std::to_string(as.oid);
    return std::string("stands in the file already, in ") + (draft.number != 0 ? "card " : "line ") +
           std::to_string(as.place);
}

}  // namespace

DraftReport::DraftReport(const Settings& settings, const DraftedFile& file, bool isDryRun)
    : settings_(settings),
      file_(file),
      isDryRun_(isDryRun),
      progress_(static_cast<int>(file.drafts.size()), file.units.c_str(), progressIsWanted(settings) && !isDryRun) {}

void DraftReport::imported(const ContactDraft& draft, DWORD oid) {
    ++imported_;
    pending_.push_back({&draft, oid, {}, 0});
}

void DraftReport::skipped(const ContactDraft& draft, const std::string& why) {
    pending_.push_back({&draft, 0, why, 0});
}

void DraftReport::known(const ContactDraft& draft, const Duplicates::Known& as) {
    ++known_;
    std::string why = whereKnown(draft, as);
    for (std::size_t i = 0; i < as.newNumbers.size(); ++i)
        why += (i == 0 ? ", without the number " : ", ") + utf8Of(as.newNumbers[i].view());
    pending_.push_back({&draft, 0, std::move(why), as.oid});
}

void DraftReport::durable() {
    for (; !pending_.empty(); pending_.pop_front())
        tell(pending_.front());
    durablyImported_ = imported_;
    std::cout.flush();
    progress_.show(told_);
}

void DraftReport::tell(const Event& event) {
    ++told_;
    settings_.json ? tellInJson(event) : tellPeople(event);
}

void DraftReport::tellInJson(const Event& event) {
    Json object = placeInJson(*event.draft);
    if (!event.skipped.empty()) {
        object["skipped"] = event.skipped;
        if (event.knownAs != 0) object["knownAs"] = event.knownAs;
        return writeJson(object);
    }
    if (isDryRun_) {
        object["contact"] = contactInJson(*event.draft);
    } else {
        object["oid"] = event.oid;
    }
    if (const std::string note = event.draft->note(); !note.empty()) object["note"] = note;
    writeJson(object);
}

/// What has no place in any contact is only counted here: it would be the same of nearly all.
void DraftReport::tellPeople(const Event& event) {
    if (!event.skipped.empty()) return line(placeOf(*event.draft) + " skipped: " + event.skipped);
    for (const std::string& each : event.draft->leftOut)
        ++leftOut_[each];
    if (isDryRun_) line(placeOf(*event.draft) + " would be imported: " + summaryOf(*event.draft));
    if (const std::string remarks = event.draft->remarksLine(); !remarks.empty())
        line(placeOf(*event.draft) + ": " + remarks);
}

void DraftReport::line(const std::string& text) {
    progress_.clear();
    std::cout << displayable(text) << '\n';
}

void DraftReport::finish() {
    progress_.clear();
    for (const std::string& remark : file_.remarks)
        settings_.json ? writeJson({{"note", remark}}) : line(remark);
    const auto total = static_cast<int>(file_.drafts.size());
    if (settings_.json) {
        Json sums{{"imported", imported_}, {file_.units, total}, {"skipped", total - imported_}, {"known", known_}};
        if (isDryRun_) sums["dryRun"] = true;
        return writeJson(sums);
    }
    std::string leftOut;
    for (const auto& [what, count] : leftOut_)
        leftOut += (leftOut.empty() ? "" : ", ") + what + " (" + std::to_string(count) + ")";
    if (!leftOut.empty()) line("left out, having no place in a contact: " + leftOut);
    const std::string units = total == 1 ? file_.units.substr(0, file_.units.size() - 1) : file_.units;
    line((isDryRun_ ? "would import " : "imported ") + std::to_string(imported_) + " of " + std::to_string(total) +
         ' ' + units + (known_ == 0 ? "" : "; " + std::to_string(known_) + " known already"));
}

}  // namespace Tool
