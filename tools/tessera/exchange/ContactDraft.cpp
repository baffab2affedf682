#include "ContactDraft.h"

#include <algorithm>

#include "Birthday.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

const PhoneBook::PBAttribute& attributeOf(PhoneBook::PBDBAttrID field) {
    return PhoneBook::aPBAttribute_[static_cast<std::size_t>(field)];
}

template <class Texts>
std::string joined(const Texts& texts, const char* between) {
    std::string line;
    for (const std::string& each : texts)
        line += (line.empty() ? "" : between) + each;
    return line;
}

}  // namespace

void ContactDraft::put(PhoneBook::PBDBAttrID field, WStringView text) {
    if (isBlank(text)) return;
    const PhoneBook::PBAttribute& attribute = attributeOf(field);
    record.*attribute.text = CString(text);
    record.dwCITypeMask |= attribute.mask;
}

void ContactDraft::put(PhoneBook::PBDBAttrID field, DWORD value) {
    const PhoneBook::PBAttribute& attribute = attributeOf(field);
    record.*attribute.number = value;
    record.dwCITypeMask |= attribute.mask;
}

void ContactDraft::putBirthday(WStringView text) {
    if (isBlank(text)) return;
    const ReadBirthday read = readBirthday(text);
    if (read.problem != nullptr) return remark("its birthday " + quoted(text) + " " + read.problem);
    if (has(PhoneBook::PBDBATTR_BIRTHDAY) && record.dtBirthday != read.day)
        return remark("its second birthday " + quoted(text) + " has no place and is left out");
    const PhoneBook::PBAttribute& attribute = attributeOf(PhoneBook::PBDBATTR_BIRTHDAY);
    record.*attribute.date = read.day;
    record.dwCITypeMask |= attribute.mask;
}

void ContactDraft::putEmail(WStringView address) {
    if (isBlank(address)) return;
    if (!has(PhoneBook::PBDBATTR_EMAIL)) put(PhoneBook::PBDBATTR_EMAIL, address);
    if (record.strEmail1Address.view() != address)
        remark("its e-mail address " + quoted(address) + " has no place and is left out");
}

bool ContactDraft::has(PhoneBook::PBDBAttrID field) const {
    return (record.dwCITypeMask & attributeOf(field).mask) != 0;
}

std::string ContactDraft::remarksLine() const {
    return joined(remarks, "; ");
}

std::string ContactDraft::note() const {
    std::vector<std::string> all = remarks;
    if (!leftOut.empty()) all.push_back("left out, having no place: " + joined(leftOut, ", "));
    return joined(all, "; ");
}

bool DraftedFile::isAllBad() const {
    return !drafts.empty() &&
           std::all_of(drafts.begin(), drafts.end(), [](const ContactDraft& draft) { return !draft.problem.empty(); });
}

bool isBlank(WStringView text) {
    return text.find_first_not_of(TEXT(" \t\r\n\u00A0\u3000")) == WStringView::npos;
}

std::string quoted(WStringView text) {
    constexpr std::size_t longest = 60;
    const bool isLong = text.size() > longest;
    return '"' + utf8Of(text.substr(0, longest)) + (isLong ? "...\"" : "\"");
}

}  // namespace Tool
