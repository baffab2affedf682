#pragma once

#include <memory>

#include "tessera/platform/contacts/ContactList.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"
#include "tessera/platform/contacts/ReferenceCount.h"

namespace Platform {

/// The contacts of the folder that pass some restrictions, in an order.
class ItemCollection final : public IPOutlookItemCollection2 {
public:
    /// All of them, by "FileAs".
    explicit ItemCollection(std::shared_ptr<ContactStore> store);

    HRESULT QueryInterface(const IID& iid, void** out) override;
    ULONG AddRef() override { return references_.add(); }
    ULONG Release() override { return references_.release(this); }

    HRESULT Add(IDispatch** out) override;
    HRESULT get_Count(int* out) override;
    HRESULT Item(int index, IDispatch** out) override;
    HRESULT Find(BSTR restriction, IDispatch** out) override;
    HRESULT Restrict(BSTR restriction, IPOutlookItemCollection** out) override;
    HRESULT Remove(int index) override;
    HRESULT Sort(BSTR property, BOOL descending) override;
    HRESULT SetColumns(BSTR columns) override;

private:
    friend class ReferenceCount;

    ItemCollection(std::shared_ptr<ContactStore> store, const SortOrder& order, Restrictions restrictions,
                   bool columnsHinted);
    ~ItemCollection() = default;

    /// This collection's restrictions and one more; nothing when its text is malformed.
    std::optional<Restrictions> narrowedBy(BSTR restriction) const;
    [[nodiscard]] HRESULT contactAt(int index, CEOID& oid, std::string_view& packed);
    void makeList();

    ReferenceCount references_;
    std::shared_ptr<ContactStore> store_;
    SortOrder order_;
    Restrictions restrictions_;
    bool columnsHinted_ = false;
    std::unique_ptr<ContactList> list_;
};

}  // namespace Platform
