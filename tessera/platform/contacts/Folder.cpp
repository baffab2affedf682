#include "tessera/platform/contacts/Folder.h"

#include "tessera/platform/contacts/InterfaceBoundary.h"
#include "tessera/platform/contacts/ItemCollection.h"

namespace Platform {

HRESULT Folder::QueryInterface(const IID& iid, void** out) {
    return answerInterface<IFolder>(this, iid, {IID_IUnknown, IID_IDispatch, IID_IFolder}, out);
}

HRESULT Folder::get_Items(IPOutlookItemCollection** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return withinBoundary([&] {
        *out = new ItemCollection(store_);
        return S_OK;
    });
}

}  // namespace Platform
