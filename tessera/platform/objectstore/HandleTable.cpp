#include "tessera/platform/objectstore/HandleTable.h"

#include <mutex>
#include <unordered_map>

namespace Platform {
namespace {

struct Table {
    std::mutex mutex;
    std::unordered_map<HANDLE, std::shared_ptr<DatabaseHandle>> handles;
    HANDLE last = 0;
};

/// Never destroyed: a program's static objects may close their handles on its way out.
Table& table() {
    static Table* const instance = new Table;
    return *instance;
}

}  // namespace

HANDLE HandleTable::add(std::shared_ptr<DatabaseHandle> opened) {
    const std::lock_guard lock(table().mutex);
    do {
        ++table().last;
    } while (table().last == 0 || table().last == INVALID_HANDLE_VALUE || table().handles.contains(table().last));
    table().handles.emplace(table().last, std::move(opened));
    return table().last;
}

std::shared_ptr<DatabaseHandle> HandleTable::find(HANDLE handle) {
    const std::lock_guard lock(table().mutex);
    const auto found = table().handles.find(handle);
    return found == table().handles.end() ? nullptr : found->second;
}

bool HandleTable::remove(HANDLE handle) {
    std::shared_ptr<DatabaseHandle> closed;  // let go of outside the lock
    const std::lock_guard lock(table().mutex);
    const auto found = table().handles.find(handle);
    if (found == table().handles.end()) return false;
    closed = std::move(found->second);
    table().handles.erase(found);
    return true;
}

void HandleTable::clear() {
    std::unordered_map<HANDLE, std::shared_ptr<DatabaseHandle>> closed;
    const std::lock_guard lock(table().mutex);
    closed.swap(table().handles);
}

}  // namespace Platform
