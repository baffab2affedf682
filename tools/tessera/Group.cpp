// group: the phone book's groups, with the categories that they follow.

#include <array>
#include <cstddef>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.h"
#include "CommandFamily.h"
#include "DisplayText.h"
#include "GroupBook.h"
#include "Output.h"
#include "Records.h"
#include "TextTable.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using PhoneBook::PBGroupInfo;

/// One of the group's settings.
struct Tone {
    const char* key;    ///< In JSON, and of the option.
    const char* label;  ///< For people.
    const char* valueName;
    const char* meaning;
    CString PBGroupInfo::*text;
};

constexpr std::array<Tone, 3> groupTones = {{
    {"call", "Call", "TONE", "Ring tone for calls", &PBGroupInfo::strBell},
    {"message", "Message", "TONE", "Ring tone for messages", &PBGroupInfo::strSMSBell},
    {"category", "Category", "TONES", "The category that the ring tones are of", &PBGroupInfo::strBellCategory},
}};

struct GroupArguments {
    std::string name;
    std::string newName;
    std::string reject;
    std::array<std::optional<std::string>, groupTones.size()> tones;
};

Json jsonOf(const PBGroupInfo& group) {
    Json object{{"id", group.dwID}, {"name", utf8Of(group.strName.view())}, {"reject", group.bReject != FALSE}};
    for (const Tone& tone : groupTones) {
        if (!(group.*tone.text).IsEmpty()) object[tone.key] = utf8Of((group.*tone.text).view());
    }
    return object;
}

void writeGroupTable(const Settings& settings, const std::vector<PBGroupInfo>& groups) {
    std::vector<Row> rows{{"ID", "Name", "Reject"}};
    for (const Tone& tone : groupTones)
        rows.front().emplace_back(tone.label);
    for (const PBGroupInfo& group : groups) {
        Row row{std::to_string(group.dwID), displayable(utf8Of(group.strName.view())), group.bReject ? "yes" : ""};
        for (const Tone& tone : groupTones)
            row.push_back(displayable(utf8Of((group.*tone.text).view())));
        rows.push_back(row);
    }
    writeTable(settings, rows);
}

ExitStatus listGroups(const Settings& settings, const GroupArguments& /*none*/) {
    Store store(settings, Store::WhenMissing::fail);
    const std::vector<PBGroupInfo> groups = GroupBook(store).groups();
    if (settings.json) {
        std::vector<Json> objects;
        objects.reserve(groups.size());
        for (const PBGroupInfo& group : groups)
            objects.push_back(jsonOf(group));
        writeJsonArray(objects);
    } else {
        writeGroupTable(settings, groups);
    }
    return ExitStatus::done;
}

ExitStatus noGroup(const Settings& settings, const std::string& name) {
    return nothingFound(settings, "there is no group \"" + name + R"("; "tessera group list" shows which there are)");
}

ExitStatus reportGroup(const Settings& settings, const char* what, const PBGroupInfo& group) {
    if (settings.json) {
        writeJson(jsonOf(group));
    } else {
        std::cout << what << " group " << displayable(utf8Of(group.strName.view())) << '\n';
    }
    return ExitStatus::done;
}

/// The ID for a group of that name: that of the category of the name, if there is one.
int idForGroup(GroupBook& book, const GroupArguments& arguments, const CString& name) {
    const auto category = book.categories().named(name);
    // The group of a category can have been renamed alone.
    if (book.group(name) || (category && book.group(category->id)))
        throw Failure("there is a group \"" + arguments.name + "\" already");
    return category ? category->id : book.nextId();
}

ExitStatus addGroup(const Settings& settings, const GroupArguments& arguments) {
    const CString name = newGroupNameArgument("NAME", arguments.name);
    Store store(settings, Store::WhenMissing::fail);
    WritingUnit unit(store);
    GroupBook book(store);
    PBGroupInfo group;
    group.dwID = static_cast<DWORD>(idForGroup(book, arguments, name));
    group.strName = name;
    store.require(SUCCEEDED(store.manager().writeAvailablePBGroup(group.dwID, &group, 0)));
    if (!book.categories().named(name)) book.categories().add(name, static_cast<int>(group.dwID));
    unit.end();
    return reportGroup(settings, "added", group);
}

ExitStatus renameGroup(const Settings& settings, const GroupArguments& arguments) {
    CString name = groupNameArgument("NAME", arguments.name);
    const CString newName = newGroupNameArgument("NEW", arguments.newName);
    Store store(settings, Store::WhenMissing::fail);
    WritingUnit unit(store);
    GroupBook book(store);
    auto group = book.group(name);
    if (!group) return noGroup(settings, arguments.name);
    if (newName == name) return reportGroup(settings, "kept", *group);
    if (book.isTaken(newName)) throw Failure("there is a group \"" + arguments.newName + "\" already");
    book.renameInContacts(name, newName);
    group->strName = newName;
    store.require(SUCCEEDED(store.manager().writeAvailablePBGroup(name, &*group)));
    if (const auto category = book.categories().named(name)) book.categories().rename(category->oid, newName);
    unit.end();
    return reportGroup(settings, "renamed", *group);
}

ExitStatus deleteGroup(const Settings& settings, const GroupArguments& arguments) {
    const CString name = groupNameArgument("NAME", arguments.name);
    Store store(settings, Store::WhenMissing::fail);
    WritingUnit unit(store);
    GroupBook book(store);
    const auto group = book.group(name);
    if (!group) return noGroup(settings, arguments.name);
    book.renameInContacts(name, CString());
    store.require(SUCCEEDED(store.manager().deleteAvailablePBGroup(name)));
    if (const auto category = book.categories().named(name)) book.categories().remove(category->oid);
    unit.end();
    return reportGroup(settings, "deleted", *group);
}

ExitStatus rejectGroup(const Settings& settings, const GroupArguments& arguments) {
    const CString name = groupNameArgument("NAME", arguments.name);
    const bool reject = arguments.reject == "on";
    if (!reject && arguments.reject != "off") throw wrongUsage("reject is on or off, not \"" + arguments.reject + "\"");
    Store store(settings, Store::WhenMissing::fail);
    WritingUnit unit(store);
    GroupBook book(store);
    if (!book.group(name)) return noGroup(settings, arguments.name);
    store.require(SUCCEEDED(store.manager().rejectPBGroup(name, reject)));
    const auto group = book.group(name);
    store.require(group.has_value());
    unit.end();
    return reportGroup(settings, "changed", *group);
}

/// The settings that the command line gives, in the order of the tones.
using GivenTones = std::array<std::optional<CString>, groupTones.size()>;

GivenTones tonesOf(const GroupArguments& arguments) {
    GivenTones given;
    bool any = false;
    for (std::size_t i = 0; i < groupTones.size(); ++i) {
        if (!arguments.tones[i]) continue;
        any = true;
        const std::string option = std::string("--") + groupTones[i].key;
        given[i] = textArgument(option, *arguments.tones[i]);
    }
    if (!any) throw wrongUsage("group ring wants --call, --message or --category");
    return given;
}

ExitStatus ringGroup(const Settings& settings, const GroupArguments& arguments) {
    CString name = groupNameArgument("NAME", arguments.name);
    const GivenTones given = tonesOf(arguments);
    Store store(settings, Store::WhenMissing::fail);
    WritingUnit unit(store);
    auto group = GroupBook(store).group(name);
    if (!group) return noGroup(settings, arguments.name);
    for (std::size_t i = 0; i < groupTones.size(); ++i) {
        if (given[i]) (*group).*groupTones[i].text = *given[i];
    }
    if (!fitARow({group->strName, group->strBell, group->strSMSBell, group->strBellCategory}))
        throw wrongUsage("the settings of the group are too long");
    store.require(SUCCEEDED(store.manager().writeAvailablePBGroup(name, &*group)));
    unit.end();
    return reportGroup(settings, "changed", *group);
}

}  // namespace

void defineGroup(Command& program, const Settings& settings, Action& chosen) {
    CommandFamily<GroupArguments> family(
        program, settings, chosen,
        {.name = "group",
         .summary = "List and change groups of contacts, and how they ring",
         .details = {"A group follows the contact category of its name."},
         .examples = {"tessera group list", "tessera group ring 가족 --call bells.mp3"}});
    GroupArguments& arguments = family.arguments();
    const auto addNewName = [&](const CommandText& text, auto run) -> Command& {
        Command& command = family.add(text, run);
        command.add_option("NAME", arguments.name, "The group's name")->required();
        return command;
    };
    const auto addNamed = [&](const CommandText& text, auto run) -> Command& {
        Command& command = addNewName(text, run);
        command.completeWithNames(command.get_option("NAME"), Completion::groups);
        return command;
    };

    family.add({.name = "list",
                .summary = "List the groups and their settings",
                .details = {"The groups are listed in the order of their names."},
                .examples = {"tessera group list"}},
               listGroups);
    addNewName({.name = "add",
                .summary = "Add a group, and its category",
                .details = {"A category of that name that has no group becomes the category of this one."},
                .examples = {"tessera group add 동호회"}},
               addGroup);
    Command& rename = addNamed({.name = "rename",
                                .summary = "Rename a group; its members stay in it",
                                .details = {"Its category is renamed as well, in every contact that carries it."},
                                .examples = {"tessera group rename 학교 동창"}},
                               renameGroup);
    rename.add_option("NEW", arguments.newName, "Its new name")->required();
    addNamed({.name = "delete",
              .summary = "Delete a group; its members stay in the phone book",
              .details = {"Its category is deleted as well, and taken out of every contact that carries it."},
              .examples = {"tessera group delete 회사"}},
             deleteGroup);
    Command& reject =
        addNamed({.name = "reject",
                  .summary = "Say whether calls from members are to be rejected",
                  .details = {"That is kept with the group; the program that takes the calls has to heed it."},
                  .examples = {"tessera group reject 회사 on"}},
                 rejectGroup);
    CLI::Option* how = reject.add_option("HOW", arguments.reject, "on or off")->required();
    reject.completeWithWords(how, {"on", "off"});
    Command& ring = addNamed({.name = "ring",
                              .summary = "Set how a group rings; an empty text removes a setting",
                              .details = {"What is not named stays."},
                              .examples = {"tessera group ring 가족 --call bells.mp3 --message \"\""}},
                             ringGroup);
    for (std::size_t i = 0; i < groupTones.size(); ++i) {
        const auto keep = [&arguments, i](const std::string& value) { arguments.tones[i] = value; };
        ring.add_option_function<std::string>(std::string("--") + groupTones[i].key, keep, groupTones[i].meaning)
            ->type_name(groupTones[i].valueName);
    }
}

}  // namespace Tool
