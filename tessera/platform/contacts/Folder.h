#pragma once

#include <memory>

#include "tessera/platform/contacts/ContactStore.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"
#include "tessera/platform/contacts/ReferenceCount.h"

namespace Platform {

/// The folder of contacts.
class Folder final : public IFolder {
public:
    explicit Folder(std::shared_ptr<ContactStore> store) : store_(std::move(store)) {}

    HRESULT QueryInterface(const IID& iid, void** out) override;
    ULONG AddRef() override { return references_.add(); }
    ULONG Release() override { return references_.release(this); }

    HRESULT get_Items(IPOutlookItemCollection** out) override;

private:
    friend class ReferenceCount;
    ~Folder() = default;

    ReferenceCount references_;
    std::shared_ptr<ContactStore> store_;
};

}  // namespace Platform
