// Searches in the image of the contacts. The input is lines: "+<digit>name;number;number@categories" puts the
// contact of that identifier, its name standing first in its record, "*..." puts it with the name behind the
// numbers, "-<digit>" removes it, "?key" searches by name, "#key" by number, and "@key" by categories, an empty
// key standing for none.

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <unicode/uchar.h>

#include "fuzz/FuzzedInput.h"
#include "tessera/database/ContactsImage.h"
#include "tessera/database/UnicodeHandler.h"
#include "tessera/phonebook/model/TelNo.h"

using Database::ContactsImage;
using Database::ScannedContact;
using Database::UnicodeHandler;
using fuzz::require;

namespace {

using Matches = std::vector<std::pair<DWORD, std::u16string>>;
using Contacts = std::map<DWORD, ScannedContact>;

std::u16string lower(const std::u16string& text) {
    CString lowered(text);
    lowered.MakeLower();
    return std::u16string(lowered.view());
}

std::vector<ScannedContact> inNameOrder(const Contacts& contacts) {
    std::vector<ScannedContact> ordered;
    for (const auto& [oid, contact] : contacts)
        ordered.push_back(contact);
    std::ranges::stable_sort(ordered, {}, &ScannedContact::sortKey);
    return ordered;
}

bool isConsonantLetter(char16_t ch) {
    return ch >= 0x3131 && ch <= 0x314E;
}

bool beginsWithInitials(const std::u16string& name, const std::u16string& initials) {
    std::u16string own;
    for (const char16_t ch : lower(name)) {
        const auto initial = static_cast<char16_t>(UnicodeHandler::getLIndex(ch));
        if (initial != u',' && !u_isUWhiteSpace(initial)) own += initial;
    }
    if (own.size() < initials.size()) return false;
    for (std::size_t i = 0; i < initials.size(); ++i) {
        if (own[i] != initials[i] && own[i] != UnicodeHandler::getRelatedJa(initials[i])) return false;
    }
    return true;
}

bool nameMatches(const std::u16string& name, const std::u16string& key) {
    const char16_t first = key.empty() ? u'\0' : key[0];
    if (first >= 0x1100 && first <= 0x1159) return beginsWithInitials(name, lower(key));
    if (!isConsonantLetter(first)) return lower(name).find(lower(key)) != std::u16string::npos;
    std::u16string initials;
    for (const char16_t ch : key) {
        const auto initial = static_cast<char16_t>(UnicodeHandler::getLIndex(ch));
        if (isConsonantLetter(ch) && initial != ch) initials += initial;
    }
    return beginsWithInitials(name, initials);
}

void checkNameSearch(const ContactsImage& image, const Contacts& contacts, const std::u16string& key) {
    Matches expected;
    for (const ScannedContact& contact : inNameOrder(contacts)) {
        if (nameMatches(contact.name, key)) expected.emplace_back(contact.oid, contact.name);
    }
    Matches found;
    for (const auto& match : image.matchingName(CString(key)))
        found.emplace_back(match.oid, match.name.view());
    require(found == expected, "a search by name finds what a plain reading finds, in its order");
}

void checkNumberSearch(const ContactsImage& image, const Contacts& contacts, const std::u16string& key) {
    Matches expected;
    for (const ScannedContact& contact : inNameOrder(contacts)) {
        for (std::size_t i = 0; i < contact.numbers.size(); ++i) {
            const std::string& number = contact.numbers[i];
            if (std::u16string(number.begin(), number.end()).find(key) == std::u16string::npos) continue;
            expected.emplace_back(contact.oid, i < contact.numbersBeforeName ? u"" : contact.name);
            break;
        }
    }
    Matches found;
    for (const auto& match : image.matchingNumber(CString(key)))
        found.emplace_back(match.oid, match.name.view());
    require(found == expected, "a search by number finds what a plain reading finds, in its order");
}

void checkCategoriesSearch(const ContactsImage& image, const Contacts& contacts, const std::u16string& key) {
    const auto wanted = key.empty() ? std::nullopt : std::optional(key);
    Matches expected;
    for (const ScannedContact& contact : inNameOrder(contacts)) {
        if (contact.categories == wanted) expected.emplace_back(contact.oid, contact.name);
    }
    Matches found;
    for (const auto& match : wanted ? image.withCategories(CString(key)) : image.withoutCategories())
        found.emplace_back(match.oid, match.name.view());
    require(found == expected, "a search by categories finds what a plain reading finds, in its order");
}

ScannedContact readContact(DWORD oid, std::u16string line, bool nameFirst) {
    ScannedContact contact;
    contact.oid = oid;
    if (const std::size_t at = line.find(u'@'); at != std::u16string::npos) {
        contact.categories = line.substr(at + 1);
        line.resize(at);
    }
    std::size_t end = std::min(line.find(u';'), line.size());
    contact.name = line.substr(0, end);
    while (end < line.size()) {
        const std::size_t start = end + 1;
        end = std::min(line.find(u';', start), line.size());
        const CString number = PhoneBook::makeCNIP(line.substr(start, end - start).c_str());
        contact.numbers.emplace_back(number.view().begin(), number.view().end());
    }
    contact.numbersBeforeName = nameFirst ? 0 : contact.numbers.size();
    // Any bytes will do for a key; these make ties and both directions likely.
    for (const char16_t ch : contact.name.substr(0, 2))
        contact.sortKey += static_cast<char>(1 + ch % 255);
    return contact;
}

void put(ContactsImage& image, Contacts& contacts, ScannedContact contact) {
    contacts.erase(contact.oid);
    const bool last = std::ranges::all_of(contacts, [&](const auto& other) {
        return std::pair(other.second.sortKey, other.first) < std::pair(contact.sortKey, contact.oid);
    });
    image.remove(contact.oid);
    last ? image.append(contact) : image.put(contact);
    contacts[contact.oid] = std::move(contact);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzedInput input(data, size);
    ContactsImage image;
    Contacts contacts;
    while (!input.atEnd()) {
        const auto command = static_cast<char>(input.byte());
        const DWORD oid = command == '+' || command == '*' || command == '-' ? input.byte() : 0;
        const std::u16string line = fuzz::upToZero(input.line());
        if (command == '+' || command == '*') put(image, contacts, readContact(oid, line, command == '+'));
        if (command == '-') {
            contacts.erase(oid);
            image.remove(oid);
        }
        if (command == '?') checkNameSearch(image, contacts, line);
        if (command == '#') checkNumberSearch(image, contacts, line);
        if (command == '@') checkCategoriesSearch(image, contacts, line);
        require(image.size() == contacts.size(), "the image holds the contacts that were put and not removed");
    }
    return 0;
}
