#include <algorithm>
#include <map>
#include <string>

#include "tessera/phonebook/PhoneBookRules.h"
#include "tessera/platform/base/Unicode.h"

namespace PhoneBook {

namespace {

using Kind = PhoneBookFinding::Kind;
using Group = PhoneBookTables::Group;
using Category = PhoneBookTables::Category;
using Groups = std::vector<const Group*>;
using Categories = std::vector<const Category*>;

std::string quoted(const CString& name) {
    return '"' + utf8Of(name.view()) + '"';
}

template <class Named>
std::string namesOf(const std::vector<const Named*>& all) {
    std::string names;
    for (const Named* each : all)
        names += (names.empty() ? "" : ", ") + quoted(each->name);
    return names;
}

class GroupRules {
public:
    GroupRules(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings);
    void apply();

private:
    template <class Named>
    void checkIds(Kind kind, const std::string& what, const std::map<DWORD, std::vector<const Named*>>& withId);
    void checkNames();
    void checkNameOf(const Groups& groups, const Categories& categories);
    void tellOtherName(const Group& group, const Category& category);
    void tellCategoryWithoutGroup(const Category& category);
    bool takeName(const CString& name);

    std::vector<PhoneBookFinding>& findings_;
    std::map<DWORD, Groups> groups_;
    std::map<DWORD, Categories> categories_;
    std::map<CString, Groups> called_;
    /// How many groups have a name, once what was told so far has been mended.
    std::map<CString, int> bearers_;
};

GroupRules::GroupRules(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings) : findings_(findings) {
    for (const Group& group : tables.groups) {
        if (group.id) groups_[*group.id].push_back(&group);
        called_[group.name].push_back(&group);
        ++bearers_[group.name];
    }
    for (const Category& category : tables.categories)
        categories_[category.id].push_back(&category);
}

void GroupRules::apply() {
    checkIds(Kind::repeatedGroupId, "groups", groups_);
    checkIds(Kind::repeatedCategoryId, "categories", categories_);
    checkNames();
    // Before the groups that are missing: a group that is renamed may leave its name to one of them.
    for (const auto& [id, categories] : categories_) {
        if (const auto groups = groups_.find(id); groups != groups_.end()) checkNameOf(groups->second, categories);
    }
    for (const auto& [id, categories] : categories_) {
        if (!groups_.contains(id)) tellCategoryWithoutGroup(*categories.front());
    }
}

template <class Named>
void GroupRules::checkIds(Kind kind, const std::string& what,
                          const std::map<DWORD, std::vector<const Named*>>& withId) {
    for (const auto& [id, all] : withId) {
        if (all.size() == 1) continue;
        findings_.push_back({.kind = kind,
                             .group = id,
                             .text = std::to_string(all.size()) + ' ' + what + " have the ID " + std::to_string(id) +
                                     ": " + namesOf(all) + "; delete all but one and add them again"});
    }
}

void GroupRules::checkNames() {
    for (const auto& [name, groups] : called_) {
        if (groups.size() == 1) continue;
        findings_.push_back(
            {.kind = Kind::repeatedGroupName,
             .name = name,
             .text = std::to_string(groups.size()) + " groups are called " + quoted(name) + "; rename all but one"});
    }
}

/// Of several groups with one ID the first is the one that follows the category.
void GroupRules::checkNameOf(const Groups& groups, const Categories& categories) {
    const bool oneIsRight = std::ranges::any_of(groups, [&](const Group* group) {
        return std::ranges::find(categories, group->name, &Category::name) != categories.end();
    });
    if (!oneIsRight) tellOtherName(*groups.front(), *categories.front());
}

void GroupRules::tellOtherName(const Group& group, const Category& category) {
    const bool isFree = takeName(category.name);
    if (isFree) --bearers_[group.name];
    std::string text = "group " + quoted(group.name) + " has another name than its category, " + quoted(category.name);
    if (!isFree) text += ", and so has another group; rename the category";
    findings_.push_back({.kind = Kind::groupOfAnotherName,
                         .group = group.id,
                         .category = category.oid,
                         .canBeMended = isFree,
                         .text = text});
}

void GroupRules::tellCategoryWithoutGroup(const Category& category) {
    const bool isFree = takeName(category.name);
    std::string text = "category " + quoted(category.name) + " has no group";
    if (!isFree) text += ", and a group with another ID has its name; rename the category";
    findings_.push_back({.kind = Kind::categoryWithoutGroup,
                         .group = category.id,
                         .category = category.oid,
                         .canBeMended = isFree,
                         .text = text});
}

/// False when a group has it.
bool GroupRules::takeName(const CString& name) {
    int& bearers = bearers_[name];
    if (bearers != 0) return false;
    bearers = 1;
    return true;
}

}  // namespace

void checkGroups(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings) {
    GroupRules(tables, findings).apply();
}

}  // namespace PhoneBook
