// add: a contact from the command line.

#include <array>
#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "Arguments.h"
#include "Commands.h"
#include "DisplayText.h"
#include "Numbers.h"
#include "Output.h"
#include "Records.h"
#include "Store.h"
#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

using PhoneBook::PBAttribute;
using PhoneBook::PBRecord;

struct Option {
    const char* name;
    PhoneBook::PBDBAttrID attribute;
    const char* valueName;
    const char* description;
};

constexpr std::array<Option, 15> options = {{
    {"--name", PhoneBook::PBDBATTR_NAME, "TEXT", "The name"},
    {"--group", PhoneBook::PBDBATTR_GROUP, "TEXT", "The group; it becomes the contact's category too"},
    {"--mobile", PhoneBook::PBDBATTR_MOBILETEL, "NUMBER", "Mobile number"},
    {"--home", PhoneBook::PBDBATTR_HOMETEL, "NUMBER", "Number at home"},
    {"--business", PhoneBook::PBDBATTR_BUSINESSTEL, "NUMBER", "Number at work"},
    {"--email", PhoneBook::PBDBATTR_EMAIL, "ADDRESS", "E-mail address"},
    {"--pager", PhoneBook::PBDBATTR_PAGER, "NUMBER", "Pager number"},
    {"--fax", PhoneBook::PBDBATTR_BUSINESSFAX, "NUMBER", "Fax number at work"},
    {"--birthday", PhoneBook::PBDBATTR_BIRTHDAY, "DATE", "Birthday: 1990-03-05, or as your locale writes it"},
    {"--avatar", PhoneBook::PBDBATTR_AVATAR, "TEXT", "Name of an avatar"},
    {"--photo", PhoneBook::PBDBATTR_PHOTO, "TEXT", "Name of a photo"},
    {"--bell", PhoneBook::PBDBATTR_BELL, "TEXT", "Name of a ring tone"},
    {"--calling-screen", PhoneBook::PBDBATTR_CALLINGSCREEN, "N", "Number of a calling screen"},
    {"--private", PhoneBook::PBDBATTR_PRIVATE, "N", "Speed-dial slots, a byte each: mobile (lowest), home, business"},
    {"--primary", PhoneBook::PBDBATTR_PRIMARYTELNO, "N",
     "Which number is primary: 4 mobile, 8 home, 16 business, 1024 pager, 2048 fax"},
}};

using Values = std::array<std::string, options.size()>;

DATE dateArgument(const std::string& name, const std::string& value) {
    COleDateTime day;
    if (!day.ParseDateTime(textArgument(name, value), VAR_DATEVALUEONLY))
        throw wrongUsage(name + " wants a date such as 1990-03-05, not \"" + value + "\"");
    if (!canBeBirthday(day.date()))
        throw wrongUsage(name + " cannot be " + value + ": the phone book does not keep it");
    return day.date();
}

void put(PBRecord& record, const Option& option, const std::string& value) {
    const PBAttribute& field = PhoneBook::aPBAttribute_[option.attribute];
    if (field.text != nullptr) {
        const CString text = textArgument(option.name, value);
        record.*field.text = PhoneBook::PhoneBookDBMgr::isTelNoAttr(option.attribute) ? withSeparatedCode(text) : text;
    } else if (field.number != nullptr) {
        record.*field.number = numberArgument(option.name, value);
    } else {
        record.*field.date = dateArgument(option.name, value);
    }
    record.dwCITypeMask |= field.mask;
}

TextLengths lengthsOf(const PBRecord& record) {
    TextLengths lengths{};
    for (const PBAttribute& field : PhoneBook::aPBAttribute_) {
        if (field.text != nullptr) lengths[static_cast<std::size_t>(field.id)] = (record.*field.text).view().size();
    }
    return lengths;
}

/// An empty value is a field that the contact lacks, as it is in a file of contacts.
PBRecord recordOf(const Values& values) {
    PBRecord record;
    for (std::size_t i = 0; i < options.size(); ++i) {
        if (!values[i].empty()) put(record, options[i], values[i]);
    }
    if (record.dwCITypeMask == 0) throw wrongUsage("add wants at least one field, such as --name");
    if (!canBeStored(lengthsOf(record)))
        throw wrongUsage("the contact is too long: a field holds " + std::to_string(longestText) +
                         " characters, and all of them together not much more");
    const bool primaryGiven = (record.dwCITypeMask & PhoneBook::dwPrimaryTelNoFlag_) != 0;
    if (primaryGiven && PhoneBook::PhoneBookDBMgr::getTelNoAttrIdx(record.dwPrimaryTelephoneNumber) == 5)
        throw wrongUsage("--primary wants one of 4, 8, 16, 1024 and 2048");
    return record;
}

ExitStatus add(const Settings& settings, const Values& values) {
    PBRecord record = recordOf(values);
    Store store(settings, Store::WhenMissing::make);
    DWORD oid = 0;
    if (FAILED(store.manager().insertPBRecord(record, &oid)) || oid == 0) throw Failure(storeErrorText(store.path()));
    if (!settings.json) {
        std::cout << "added contact " << oid << '\n';
        return ExitStatus::done;
    }
    const auto added = readContact(store.manager(), oid);
    if (!added) throw Failure(storeErrorText(store.path()));
    writeContact(settings, *added);
    return ExitStatus::done;
}

}  // namespace

void defineAdd(CLI::App& program, const Settings& settings, Action& chosen) {
    CLI::App* command = program.add_subcommand("add", "Add a contact; makes the phone book when there is none");
    const auto values = std::make_shared<Values>();
    for (std::size_t i = 0; i < options.size(); ++i)
        command->add_option(options[i].name, (*values)[i], options[i].description)->type_name(options[i].valueName);
    command->footer(
        "A number stays as typed, but for a space behind the country calling code of one such as +821023456789.\n"
        "Example:\n  tessera add --name 김민수 --mobile 010-2345-6789 --group 친구 --birthday 1990-03-05");
    command->callback(
        [&settings, &chosen, values] { chosen = [&settings, values] { return add(settings, *values); }; });
}

}  // namespace Tool
