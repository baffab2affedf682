#pragma once

#include <utility>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Types.h"

struct GUID {
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];

    friend bool operator==(const GUID&, const GUID&) = default;
};
using IID = GUID;
using CLSID = GUID;

inline constexpr IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

/// The root of every reference-counted interface. Never deleted, only released.
class IUnknown {
public:
    /// On success `*out` holds a new reference. E_NOINTERFACE when the object has no such interface.
    [[nodiscard]] virtual HRESULT QueryInterface(const IID& iid, void** out) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;

protected:
    ~IUnknown() = default;
};

/// The interface through which the items of a folder are handed out.
class IDispatch : public IUnknown {
protected:
    ~IDispatch() = default;
};

/// Owns one reference.
template <class Interface>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(const ComPtr& other) : object_(other.object_) {
        if (object_ != nullptr) object_->AddRef();
    }
    ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ComPtr() { reset(); }

    /// Takes over a reference that the caller owns.
    static ComPtr adopt(Interface* object) {
        ComPtr owner;
        owner.object_ = object;
        return owner;
    }
    /// Adds a reference of its own to a borrowed object.
    static ComPtr share(Interface* object) {
        if (object != nullptr) object->AddRef();
        return adopt(object);
    }

    Interface* get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    Interface* detach() { return std::exchange(object_, nullptr); }
    void reset() {
        if (Interface* object = std::exchange(object_, nullptr); object != nullptr) object->Release();
    }
    /// Where an operation puts a reference that this object then owns; releases the one held so far.
    Interface** out() {
        reset();
        return &object_;
    }

private:
    Interface* object_ = nullptr;
};
