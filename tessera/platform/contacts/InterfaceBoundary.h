#pragma once

#include <initializer_list>
#include <new>

#include "tessera/platform/base/ComPtr.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/objectstore/ObjectStore.h"

namespace Platform {

/// Runs an operation of an interface. What it throws ends here, as a result code, and takes the batch that it belongs
/// to with it.
template <class Operation>
HRESULT withinBoundary(Operation&& operation) noexcept {
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        ObjectStoreBatch::giveUp();
        return E_OUTOFMEMORY;
    } catch (...) {
        ObjectStoreBatch::giveUp();
        return E_FAIL;
    }
}

/// QueryInterface of an object whose interfaces all derive from one another, so that one pointer serves
/// for each of them.
template <class Interface>
HRESULT answerInterface(Interface* object, const IID& wanted, std::initializer_list<IID> interfaces, void** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    for (const IID& iid : interfaces) {
        if (!(iid == wanted)) continue;
        object->AddRef();
        *out = object;
        return S_OK;
    }
    return E_NOINTERFACE;
}

}  // namespace Platform
