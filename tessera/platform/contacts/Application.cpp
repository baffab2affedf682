#include <memory>
#include <string>

#include "tessera/platform/contacts/Contact.h"
#include "tessera/platform/contacts/ContactStore.h"
#include "tessera/platform/contacts/Folder.h"
#include "tessera/platform/contacts/InterfaceBoundary.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"
#include "tessera/platform/contacts/ReferenceCount.h"

namespace Platform {

namespace {

/// The way into the contacts model. A session stands for the store that was mounted when it began.
class Application final : public IPOutlookApp {
public:
    HRESULT QueryInterface(const IID& iid, void** out) override;
    ULONG AddRef() override { return references_.add(); }
    ULONG Release() override { return references_.release(this); }

    HRESULT Logon(LONG hwnd) override;
    HRESULT Logoff() override;
    HRESULT GetDefaultFolder(int id, IFolder** out) override;
    HRESULT GetItemFromOid(LONG oid, IDispatch** out) override;

private:
    friend class Platform::ReferenceCount;
    ~Application() = default;

    /// The session's store; without a session, that of one begun for the purpose.
    const std::shared_ptr<ContactStore>& store();

    ReferenceCount references_;
    std::shared_ptr<ContactStore> store_;
};

HRESULT Application::QueryInterface(const IID& iid, void** out) {
    return answerInterface<IPOutlookApp>(this, iid, {IID_IUnknown, IID_IDispatch, IID_IPOutlookApp}, out);
}

HRESULT Application::Logon(LONG /*hwnd*/) {
    return withinBoundary([&] {
        store_ = ContactStore::open();
        return store_ != nullptr ? S_OK : E_FAIL;
    });
}

HRESULT Application::Logoff() {
    store_.reset();
    return S_OK;
}

const std::shared_ptr<ContactStore>& Application::store() {
    if (store_ == nullptr) store_ = ContactStore::open();
    return store_;
}

HRESULT Application::GetDefaultFolder(int id, IFolder** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return withinBoundary([&] {
        if (id != olFolderContacts || store() == nullptr) return E_FAIL;
        *out = new Folder(store_);
        return S_OK;
    });
}

HRESULT Application::GetItemFromOid(LONG oid, IDispatch** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return withinBoundary([&] {
        if (store() == nullptr) return E_FAIL;
        const auto id = static_cast<CEOID>(oid);
        std::string packed;
        const HRESULT result = store_->read(id, packed);
        if (FAILED(result)) return E_FAIL;
        *out = new Contact(store_, id, packed);
        return S_OK;
    });
}

}  // namespace

}  // namespace Platform

HRESULT CoCreateInstance(const CLSID& classId, IUnknown* outer, DWORD context, const IID& iid, void** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (!(classId == CLSID_Application) || outer != nullptr || (context & CLSCTX_INPROC_SERVER) == 0) {
        return E_INVALIDARG;
    }
    return Platform::withinBoundary([&] {
        const auto application = ComPtr<IPOutlookApp>::adopt(new Platform::Application);
        return application->QueryInterface(iid, out);
    });
}
