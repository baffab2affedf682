#pragma once

namespace Platform::port {

#ifdef _WIN32

/// See `ofThisThread`; `type` tells the objects of a thread apart.
void* objectOfThisThread(const void* type, void* (*make)(), void (*destroy)(void*));

#endif

/// The calling thread's own object of a type: made when the thread first asks for it, destroyed when the thread ends,
/// those made last first. What its constructor throws passes through.
template <class T>
T& ofThisThread() {
#ifdef _WIN32
    // thread_local is of no use here for what has a destructor: when the runtime of mingw-w64 calls it, at the end of
    // the thread, it has freed the object's memory already.
    static constexpr char type = 0;
    return *static_cast<T*>(objectOfThisThread(
        &type, []() -> void* { return new T(); }, [](void* object) { delete static_cast<T*>(object); }));
#else
    thread_local T object;
    return object;
#endif
}

}  // namespace Platform::port
