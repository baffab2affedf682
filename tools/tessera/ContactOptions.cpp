#include "ContactOptions.h"

#include <algorithm>

#include "Arguments.h"
#include "Command.h"
#include "Failure.h"
#include "Numbers.h"
#include "tessera/platform/base/COleDateTime.h"

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

DATE dateArgument(const std::string& name, const std::string& value) {
    COleDateTime day;
    if (!day.ParseDateTime(textArgument(name, value), VAR_DATEVALUEONLY))
        throw wrongUsage(name + " wants a date such as 1990-03-05, not \"" + value + "\"");
    if (!canBeBirthday(day.date()))
        throw wrongUsage(name + " cannot be " + value + ": the phone book does not keep it");
    return day.date();
}

DWORD numberFor(const Option& option, const std::string& value) {
    const DWORD number = numberArgument(option.name, value);
    const bool isPrimary = option.attribute == PhoneBook::PBDBATTR_PRIMARYTELNO;
    if (isPrimary && PhoneBook::PhoneBookDBMgr::getTelNoAttrIdx(number) == 5)
        throw wrongUsage("--primary wants one of 4, 8, 16, 1024 and 2048");
    return number;
}

void put(PBRecord& record, const Option& option, const std::string& value) {
    const PBAttribute& field = PhoneBook::aPBAttribute_[option.attribute];
    if (field.text != nullptr) {
        const CString text = textArgument(option.name, value);
        record.*field.text = PhoneBook::PhoneBookDBMgr::isTelNoAttr(option.attribute) ? withSeparatedCode(text) : text;
    } else if (field.number != nullptr) {
        record.*field.number = numberFor(option, value);
    } else {
        record.*field.date = dateArgument(option.name, value);
    }
    record.dwCITypeMask |= field.mask;
}

void takeOut(PBRecord& record, const Option& option) {
    const PBAttribute& field = PhoneBook::aPBAttribute_[option.attribute];
    const PBRecord without;
    if (field.text != nullptr) {
        record.*field.text = CString();
    } else if (field.number != nullptr) {
        record.*field.number = without.*field.number;
    } else {
        record.*field.date = without.*field.date;
    }
    record.dwCITypeMask &= ~field.mask;
}

}  // namespace

void ContactOptions::define(Command& command) {
    static_assert(options.size() == count);
    for (std::size_t i = 0; i < count; ++i) {
        CLI::Option* option = command.add_option_function<std::string>(
            options[i].name, [this, i](const std::string& value) { values_[i] = value; }, options[i].description);
        option->type_name(options[i].valueName);
        if (options[i].attribute == PhoneBook::PBDBATTR_GROUP) command.completeWithNames(option, Completion::groups);
    }
}

bool ContactOptions::empty() const {
    return std::none_of(values_.begin(), values_.end(), [](const auto& value) { return value.has_value(); });
}

void ContactOptions::apply(PBRecord& record) const {
    for (std::size_t i = 0; i < count; ++i) {
        if (!values_[i].has_value()) continue;
        if (values_[i]->empty()) {
            takeOut(record, options[i]);
        } else {
            put(record, options[i], *values_[i]);
        }
    }
}

void requireStorable(const PBRecord& record) {
    if (canBeStored(lengthsOf(record))) return;
    throw wrongUsage("the contact is too long: a field holds " + std::to_string(longestText) +
                     " characters, and all of them together not much more");
}

}  // namespace Tool
