#include "Person.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <string_view>
#include <vector>

#include "Arguments.h"
#include "Callers.h"
#include "DisplayText.h"
#include "Numbers.h"
#include "Output.h"
#include "Question.h"
#include "System.h"
#include "TextTable.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using PhoneBook::PhoneBookDBMgr;

/// By what a text can name a contact.
struct Naming {
    const char* prefix;  ///< Says that it is to be this alone.
    bool byIdentifier;
    bool byNumber;
    bool byName;
};

constexpr std::array<Naming, 3> namings = {
    {{"oid:", true, false, false}, {"number:", false, true, false}, {"name:", false, false, true}}};
constexpr Naming anyNaming = {"", true, true, true};

const Naming& namingOf(std::string_view argument) {
    for (const Naming& naming : namings) {
        if (argument.starts_with(naming.prefix)) return naming;
    }
    return anyNaming;
}

bool isAllDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Such as an identifier has, and no telephone number but a short code.
bool looksLikeIdentifier(std::string_view text) {
    constexpr std::size_t longest = 6;
    return isAllDigits(text) && text.size() <= longest && text.front() != '0';
}

/// A name can have a digit too, "Anna 2": nobody types a number so.
bool looksLikeNumber(std::string_view text) {
    return text.find_first_not_of("0123456789+-*#PT()./ ") == std::string_view::npos &&
           text.find_first_of("0123456789") != std::string_view::npos;
}

CString lowered(CString text) {
    text.MakeLower();
    return text;
}

/// Those whom a text can mean.
struct Meant {
    std::vector<Contact> contacts;
    bool isByPart = false;  ///< The text is only a part or the initials of their names.
};

/// Those called just this; else those called so but for the case; else, unless the name must be whole, all whose name
/// the search finds.
Meant contactsCalled(PhoneBookDBMgr& manager, const CString& name, bool isWhole) {
    std::vector<Contact> found = readContacts(manager, manager.searchPBRecord(PhoneBook::PBDBATTR_NAME, name));
    std::vector<Contact> called;
    const auto keepThose = [&](auto isCalled) {
        std::copy_if(found.begin(), found.end(), std::back_inserter(called),
                     [&](const Contact& contact) { return isCalled(contact.record.strName); });
        return !called.empty();
    };
    if (keepThose([&](const CString& its) { return its == name; })) return {std::move(called)};
    if (keepThose([&](const CString& its) { return lowered(its) == lowered(name); })) return {std::move(called)};
    if (isWhole) return {};
    return {std::move(found), true};
}

Meant contactsNamed(PhoneBookDBMgr& manager, const std::string& argument, Purpose purpose) {
    const Naming& naming = namingOf(argument);
    const bool isSaid = &naming != &anyNaming;
    const std::string text = argument.substr(std::string_view(naming.prefix).size());
    if (text.empty()) throw wrongUsage("PERSON is empty: it wants an identifier, a number or a name");
    const CString words = textArgument("PERSON", text);
    if (naming.byIdentifier) {
        const auto oid = isSaid ? numberArgument(naming.prefix, text) : numberOf(text);
        if (auto contact = oid ? readContact(manager, *oid) : std::nullopt) return {{std::move(*contact)}};
        if (isSaid || (purpose != Purpose::look && looksLikeIdentifier(text))) return {};
    }
    if (naming.byNumber && (isSaid || looksLikeNumber(text))) {
        const std::vector<CString> forms = formsOf(words);
        if (forms.empty() && isSaid) throw wrongUsage("\"" + text + "\" holds no digits, as 010-2345-6789 does");
        std::vector<Contact> callers = allCallersWith(manager, forms).contacts;
        if (!callers.empty() || isSaid) return {std::move(callers)};
    }
    return contactsCalled(manager, words, !isSaid && isAllDigits(text));
}

std::string firstNumberOf(const Contact& contact) {
    for (const Field& field : fields) {
        if (PhoneBookDBMgr::isTelNoAttr(field.attribute) && contact.has(field)) return fieldText(contact, field);
    }
    return {};
}

/// Reads one line; throws a Failure when it chooses none of them.
Contact chosenOf(const std::vector<Contact>& contacts, const std::string& argument) {
    constexpr std::size_t mostOffered = 20;
    const std::size_t offered = std::min(contacts.size(), mostOffered);
    std::vector<Row> rows{{"", "Oid", "Name", "Group", "Number"}};
    for (std::size_t i = 0; i < offered; ++i) {
        const Contact& contact = contacts[i];
        rows.push_back({std::to_string(i + 1), std::to_string(contact.oid),
                        displayable(utf8Of(contact.record.strName.view())),
                        displayable(utf8Of(contact.record.strGroup.view())), displayable(firstNumberOf(contact))});
    }
    std::cerr << "\"" << displayable(argument) << "\" can be any of these:\n"
              << tableText(rows, {.width = terminalWidth()});
    if (offered < contacts.size())
        std::cerr << "and " << contacts.size() - offered << " more: type more of the name to see them\n";
    const auto choice = numberOf(answerTo("Which one? [1-" + std::to_string(offered) + "]"));
    if (!choice || *choice == 0 || *choice > offered) throw Failure("no one was chosen, and nothing was done");
    return contacts[*choice - 1];
}

/// The name and a number, by which a person knows who that is.
std::string introductionOf(const Contact& contact) {
    const std::string number = firstNumberOf(contact);
    return utf8Of(contact.record.strName.view()) + (number.empty() ? "" : ", " + number);
}

Failure onlyPartFound(const Contact& contact, const std::string& argument) {
    const std::string oid = std::to_string(contact.oid);
    return wrongUsage("\"" + argument + "\" is only a part of a name; if contact " + oid + " is meant (" +
                      introductionOf(contact) + "), say oid:" + oid + " or the whole name");
}

Failure severalFound(const std::vector<Contact>& contacts, const std::string& argument) {
    constexpr std::size_t mostNamed = 3;
    constexpr std::size_t nameWidth = 30;
    std::string some;
    for (std::size_t i = 0; i < std::min(contacts.size(), mostNamed); ++i) {
        const std::string name = displayable(utf8Of(contacts[i].record.strName.view()));
        some += (i == 0 ? "" : ", ") + std::to_string(contacts[i].oid) + (name.empty() ? "" : " ") +
                cutToWidth(name, nameWidth);
    }
    if (contacts.size() > mostNamed) some += " and " + std::to_string(contacts.size() - mostNamed) + " more";
    return wrongUsage("\"" + argument + "\" can be " + std::to_string(contacts.size()) + " contacts: " + some +
                      "; use one of these identifiers");
}

}  // namespace

std::optional<Contact> personNamed(Store& store, const std::string& argument, Purpose purpose) {
    const auto [contacts, isByPart] = contactsNamed(store.manager(), argument, purpose);
    if (contacts.empty()) return std::nullopt;
    const bool isOne = contacts.size() == 1;
    if (isOne && !(isByPart && purpose == Purpose::removal)) return contacts.front();
    if (!canAsk()) throw isOne ? onlyPartFound(contacts.front(), argument) : severalFound(contacts, argument);
    if (!isOne) return chosenOf(contacts, argument);
    requireConsent("Delete " + introductionOf(contacts.front()) + "?");
    return contacts.front();
}

std::string nobodyText(const std::string& argument) {
    if (numberOf(argument)) return "there is no contact " + argument;
    return "nobody is called or has the number \"" + argument + R"("; "tessera list" shows who there is)";
}

ExitStatus nobodyFound(const Settings& settings, const std::string& argument) {
    return nothingFound(settings, nobodyText(argument));
}

}  // namespace Tool
