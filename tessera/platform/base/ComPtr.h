#pragma once

#include <utility>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Types.h"

/// The name of an interface or a class of objects.
struct GUID {
    /// @{
    /// Its 128 bits, in four parts.
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];
    /// @}

    /// The same bits.
    friend bool operator==(const GUID&, const GUID&) = default;
};
using IID = GUID;    ///< Names an interface.
using CLSID = GUID;  ///< Names a class of objects.

/// The root interface, which every object has.
inline constexpr IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

/// The root of every reference-counted interface. Never deleted, only released.
class IUnknown {
public:
    /// On success `*out` holds a new reference. E_NOINTERFACE when the object has no such interface.
    [[nodiscard]] virtual HRESULT QueryInterface(const IID& iid, void** out) = 0;
    /// @{
    /// One reference more, or less; the last one less ends the object. Answers how many there are then.
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;
    /// @}

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
    /// Adds a reference.
    ComPtr(const ComPtr& other) : object_(other.object_) {
        if (object_ != nullptr) object_->AddRef();
    }
    /// Takes over the reference.
    ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    /// Releases what it held.
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

    /// @{
    /// The object, no reference added; null when there is none.
    Interface* get() const { return object_; }
    Interface* operator->() const { return object_; }
    /// @}
    /// Whether there is an object.
    explicit operator bool() const { return object_ != nullptr; }
    /// Gives the reference up to the caller.
    Interface* detach() { return std::exchange(object_, nullptr); }
    /// Releases the reference, if there is one.
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
