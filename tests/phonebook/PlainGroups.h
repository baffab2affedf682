#pragma once

#include <algorithm>
#include <map>
#include <optional>

#include "tessera/phonebook/PBGroupInfo.h"

// What the groups are to do, by plain maps: categories are followed, contacts move with their group.

namespace PhoneBook::groups_test {

struct Category {
    CString name;
    std::int16_t id = 0;
};

/// Everything by the order in which it was added.
struct Model {
    std::map<int, Category> categories;
    std::map<int, PBGroupInfo> groups;
    std::map<int, CString> contacts;  ///< Each one's group.
    int nextKey = 0;

    std::optional<int> keyOf(DWORD id) const {
        return firstThat([&](const PBGroupInfo& group) { return group.dwID == id; });
    }
    std::optional<int> keyOf(const CString& name) const {
        return firstThat([&](const PBGroupInfo& group) { return group.strName == name; });
    }
    DWORD nextId() const {
        DWORD largest = 0;
        for (const auto& [key, group] : groups)
            largest = std::max(largest, group.dwID);
        return largest + 1;
    }

    void insert(PBGroupInfo group, bool newId) {
        if (newId) group.dwID = nextId();
        group.dwFlags = 7;
        groups[nextKey++] = group;
    }
    void update(int key, PBGroupInfo group) {
        group.dwFlags = 7;
        groups[key] = group;
    }
    /// Answers what the caller's `group` is afterwards.
    PBGroupInfo write(DWORD id, PBGroupInfo group, bool keep) {
        const auto key = keyOf(id);
        if (key && keep) {
            const PBGroupInfo& stored = groups[*key];
            const PBGroupInfo given = group;
            group = stored;
            group.dwID = given.dwID;
            group.strName = given.strName;
        }
        if (key) {
            update(*key, group);
        } else {
            insert(group, false);
        }
        group.dwFlags = 7;
        return group;
    }
    void write(const CString& name, const PBGroupInfo& group) {
        const auto key = keyOf(name);
        if (!key) return insert(group, true);
        update(*key, group);
        move(name, group.strName);
    }
    void remove(std::optional<int> key) {
        if (!key) return;
        move(groups[*key].strName, CString());
        groups.erase(*key);
    }
    void move(const CString& from, const CString& to) {
        for (auto& [key, group] : contacts) {
            if (group == from) group = to;
        }
    }
    void setUp() {
        for (const auto& [key, category] : categories) {
            PBGroupInfo group;
            group.dwID = static_cast<DWORD>(category.id);
            group.strName = category.name;
            write(group.dwID, group, true);
        }
    }

private:
    template <class Condition>
    std::optional<int> firstThat(Condition&& condition) const {
        const auto found = std::ranges::find_if(groups, [&](const auto& entry) { return condition(entry.second); });
        if (found == groups.end()) return std::nullopt;
        return found->first;
    }
};

}  // namespace PhoneBook::groups_test
