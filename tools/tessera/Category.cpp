// category: the platform's contact categories, as another program changes them.

#include <iostream>
#include <string>
#include <vector>

#include "CommandFamily.h"
#include "DisplayText.h"
#include "GroupBook.h"
#include "Output.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

struct CategoryArguments {
    std::string name;
    std::string newName;
};

Json jsonOf(const Category& category) {
    return {{"oid", category.oid}, {"id", category.id}, {"name", utf8Of(category.name.view())}};
}

ExitStatus listCategories(const Settings& settings, const CategoryArguments& /*none*/) {
    Store store(settings, Store::WhenMissing::fail);
    std::vector<Json> objects;
    for (const Category& category : CategoryTable(store).inNameOrder()) {
        if (settings.json) {
            objects.push_back(jsonOf(category));
        } else {
            std::cout << displayable(utf8Of(category.name.view())) << '\n';
        }
    }
    if (settings.json) writeJsonArray(objects);
    return ExitStatus::done;
}

ExitStatus noCategory(const Settings& settings, const std::string& name) {
    return nothingFound(settings,
                        "there is no category \"" + name + R"("; "tessera category list" shows which there are)");
}

Failure takenName(const std::string& name) {
    return Failure("there is a category or a group \"" + name + "\" already");
}

ExitStatus reportCategory(const Settings& settings, const char* what, const Category& category) {
    if (settings.json) {
        writeJson(jsonOf(category));
    } else {
        std::cout << what << " category " << displayable(utf8Of(category.name.view())) << '\n';
    }
    return ExitStatus::done;
}

/// The ID for a category of that name: that of the group of the name, if there is one without a category.
int idForCategory(GroupBook& book, const CategoryArguments& arguments, const CString& name) {
    if (book.categories().named(name)) throw takenName(arguments.name);
    const auto group = book.group(name);
    if (!group) return book.nextId();
    const int id = static_cast<int>(group->dwID);
    if (id < 1 || id > GroupBook::largestId || book.categories().withId(id)) throw takenName(arguments.name);
    return id;
}

ExitStatus addCategory(const Settings& settings, const CategoryArguments& arguments) {
    Category category;
    category.name = newGroupNameArgument("NAME", arguments.name);
    Store store(settings, Store::WhenMissing::fail);
    WritingUnit unit(store);
    GroupBook book(store);
    category.id = idForCategory(book, arguments, category.name);
    category.oid = book.categories().add(category.name, category.id);
    store.bringGroupsIntoStep();
    unit.end();
    return reportCategory(settings, "added", category);
}

ExitStatus renameCategory(const Settings& settings, const CategoryArguments& arguments) {
    const CString name = groupNameArgument("NAME", arguments.name);
    const CString newName = newGroupNameArgument("NEW", arguments.newName);
    Store store(settings, Store::WhenMissing::fail);
    WritingUnit unit(store);
    GroupBook book(store);
    auto category = book.categories().named(name);
    if (!category) return noCategory(settings, arguments.name);
    if (newName == name) return reportCategory(settings, "kept", *category);
    if (book.isTaken(newName)) throw takenName(arguments.newName);
    book.renameInContacts(name, newName);
    book.categories().rename(category->oid, newName);
    // Nobody may be following the changes: what would be done then.
    store.bringGroupsIntoStep();
    store.require(SUCCEEDED(store.manager().modifyPBGroupInPBRecord(name, newName)));
    unit.end();
    category->name = newName;
    return reportCategory(settings, "renamed", *category);
}

ExitStatus deleteCategory(const Settings& settings, const CategoryArguments& arguments) {
    const CString name = groupNameArgument("NAME", arguments.name);
    Store store(settings, Store::WhenMissing::fail);
    WritingUnit unit(store);
    GroupBook book(store);
    const auto category = book.categories().named(name);
    if (!category) return noCategory(settings, arguments.name);
    book.renameInContacts(name, CString());
    book.categories().remove(category->oid);
    store.bringGroupsIntoStep();
    if (book.group(category->id)) {
        const auto id = static_cast<DWORD>(category->id);
        store.require(SUCCEEDED(store.manager().deleteAvailablePBGroup(id)));
    }
    // The group may have had another name than its category.
    store.require(SUCCEEDED(store.manager().modifyPBGroupInPBRecord(name, CString())));
    unit.end();
    return reportCategory(settings, "deleted", *category);
}

}  // namespace

void defineCategory(Command& program, const Settings& settings, Action& chosen) {
    CommandFamily<CategoryArguments> family(
        program, settings, chosen,
        {.name = "category",
         .summary = "List and change the categories that groups follow",
         .details = {"Categories change here as another program would change them, and the groups are brought "
                     "into step with all of them."},
         .examples = {"tessera category list", "tessera category add 동호회"}});
    CategoryArguments& arguments = family.arguments();
    const auto addNewName = [&](const CommandText& text, auto run) -> Command& {
        Command& command = family.add(text, run);
        command.add_option("NAME", arguments.name, "The category's name")->required();
        return command;
    };
    const auto addNamed = [&](const CommandText& text, auto run) -> Command& {
        Command& command = addNewName(text, run);
        command.completeWithNames(command.get_option("NAME"), Completion::categories);
        return command;
    };

    family.add({.name = "list",
                .summary = "List the categories",
                .details = {"The categories are listed in the order of their names."},
                .examples = {"tessera category list"}},
               listCategories);
    addNewName({.name = "add",
                .summary = "Add a category, and its group",
                .details = {"A group of that name that has no category becomes the group of this one."},
                .examples = {"tessera category add 동호회"}},
               addCategory);
    Command& rename = addNamed({.name = "rename",
                                .summary = "Rename a category in all contacts that carry it, and its group",
                                .details = {"The other categories of the contacts stay as they are."},
                                .examples = {"tessera category rename 학교 동창"}},
                               renameCategory);
    rename.add_option("NEW", arguments.newName, "Its new name")->required();
    addNamed({.name = "delete",
              .summary = "Take a category out of all contacts that carry it, and delete it and its group",
              .details = {"The contacts stay, with their other categories."},
              .examples = {"tessera category delete 회사"}},
             deleteCategory);
}

}  // namespace Tool
