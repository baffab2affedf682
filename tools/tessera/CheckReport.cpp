#include "CheckReport.h"

#include <algorithm>
#include <iostream>

#include "DisplayText.h"
#include "Output.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using PhoneBook::PhoneBookFinding;
using Kind = PhoneBookFinding::Kind;

struct KindKey {
    Kind kind;
    const char* key;  ///< In JSON.
};

constexpr KindKey kindKeys[] = {
    {Kind::contactWithoutRow, "contact-without-row"},
    {Kind::repeatedRow, "repeated-row"},
    {Kind::rowOfMissingContact, "row-of-missing-contact"},
    {Kind::rowOfNoContact, "row-of-no-contact"},
    {Kind::lostGroup, "lost-group"},
    {Kind::repeatedSlot, "repeated-slot"},
    {Kind::impossibleSlot, "impossible-slot"},
    {Kind::repeatedGroupId, "repeated-group-id"},
    {Kind::repeatedGroupName, "repeated-group-name"},
    {Kind::repeatedCategoryId, "repeated-category-id"},
    {Kind::groupOfAnotherName, "group-of-another-name"},
    {Kind::categoryWithoutGroup, "category-without-group"},
    {Kind::tooManyCalls, "too-many-calls"},
};

Json jsonOf(const PhoneBookFinding& finding) {
    Json object{{"what", std::ranges::find(kindKeys, finding.kind, &KindKey::kind)->key}};
    const auto put = [&object](const char* key, const auto& number) {
        if (number) object[key] = *number;
    };
    put("contact", finding.contact);
    put("row", finding.row);
    put("slot", finding.slot);
    put("group", finding.group);
    put("category", finding.category);
    if (finding.name) object["name"] = utf8Of(finding.name->view());
    object["mendable"] = finding.canBeMended;
    object["text"] = finding.text;
    return object;
}

Json jsonOf(const CheckReport::Findings& findings) {
    Json objects = Json::array();
    for (const PhoneBookFinding& finding : findings)
        objects.push_back(jsonOf(finding));
    return objects;
}

Json jsonOf(const CheckReport& report) {
    Json object{{"store", report.store}, {"full", report.full}, {"file", report.file}};
    object["phoneBook"] = report.phoneBook ? jsonOf(*report.phoneBook) : Json();
    if (report.backup) object["backup"] = *report.backup;
    if (report.mended) object["mended"] = jsonOf(*report.mended);
    return object;
}

std::size_t wrongThings(const CheckReport& report) {
    return report.file.size() + (report.phoneBook ? report.phoneBook->size() : 0);
}

void writeLines(const CheckReport& report) {
    if (report.backup) std::cout << "kept as it was in " << displayable(*report.backup) << '\n';
    for (const PhoneBookFinding& finding : report.mended.value_or(CheckReport::Findings()))
        std::cout << "mended: " << displayable(finding.text) << '\n';
    for (const std::string& finding : report.file)
        std::cout << displayable(finding) << '\n';
    for (const PhoneBookFinding& finding : report.phoneBook.value_or(CheckReport::Findings()))
        std::cout << displayable(finding.text) << (finding.canBeMended ? "; --repair mends it" : "") << '\n';
    if (wrongThings(report) == 0) std::cout << "nothing is wrong with " << displayable(report.store) << '\n';
}

std::string summaryOf(const CheckReport& report) {
    const std::size_t wrong = wrongThings(report);
    std::string summary = wrong == 1 ? "one thing is" : std::to_string(wrong) + " things are";
    summary += " wrong with " + report.store;
    if (!report.phoneBook)
        summary += R"(; the phone book in it was not looked at, save what can be read with "tessera recover")";
    return summary;
}

}  // namespace

ExitStatus writeReport(const Settings& settings, const CheckReport& report) {
    if (settings.json) {
        writeJson(jsonOf(report));
    } else {
        writeLines(report);
    }
    if (wrongThings(report) == 0) return ExitStatus::done;
    complain(settings, summaryOf(report));
    return ExitStatus::notAllRight;
}

}  // namespace Tool
