#include <algorithm>
#include <memory>
#include <new>
#include <vector>

#include "tessera/platform/port/ThreadLocal.h"
#include "tessera/platform/port/WindowsSystem.h"

namespace Platform::port {
namespace {

struct ThreadObject {
    const void* type;
    void* object;
    void (*destroy)(void*);
};

using ThreadObjects = std::vector<ThreadObject>;

/// Where the system keeps a thread's objects, up to the thread's very end.
SystemDword objectsIndex() {
    static const SystemDword index = [] {
        const SystemDword made = TlsAlloc();
        if (made == TLS_OUT_OF_INDEXES) throw std::bad_alloc();
        return made;
    }();
    return index;
}

/// Its end is that of the thread. Nothing of it is looked at then: its memory is gone.
struct ThreadEnd {
    ~ThreadEnd() {
        // Destroying one may ask for another.
        while (auto* const objects = static_cast<ThreadObjects*>(TlsGetValue(objectsIndex()))) {
            while (!objects->empty()) {
                const ThreadObject last = objects->back();
                objects->pop_back();
                last.destroy(last.object);
            }
            TlsSetValue(objectsIndex(), nullptr);
            delete objects;
        }
    }
};

ThreadObjects& objectsOfThisThread() {
    if (auto* const objects = static_cast<ThreadObjects*>(TlsGetValue(objectsIndex()))) return *objects;
    thread_local const ThreadEnd end;
    auto objects = std::make_unique<ThreadObjects>();
    if (TlsSetValue(objectsIndex(), objects.get()) == 0) throw std::bad_alloc();
    return *objects.release();
}

}  // namespace

void* objectOfThisThread(const void* type, void* (*make)(), void (*destroy)(void*)) {
    ThreadObjects& objects = objectsOfThisThread();
    const auto known =
        std::ranges::find_if(objects, [type](const ThreadObject& object) { return object.type == type; });
    if (known != objects.end()) return known->object;
    void* const made = make();  // which may make others
    try {
        objects.push_back({type, made, destroy});
    } catch (...) {
        destroy(made);
        throw;
    }
    return made;
}

}  // namespace Platform::port
