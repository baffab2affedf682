#include "tessera/platform/contacts/ItemCollection.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "tessera/platform/contacts/Contact.h"
#include "tessera/platform/contacts/InterfaceBoundary.h"
#include "tessera/platform/contacts/MatchList.h"

namespace Platform {

namespace {

WStringView viewOf(BSTR text) {
    return text != nullptr ? WStringView(text) : WStringView();
}

WStringView withoutBrackets(WStringView name) {
    const bool bracketed = name.size() >= 2 && name.front() == u'[' && name.back() == u']';
    return bracketed ? name.substr(1, name.size() - 2) : name;
}

}  // namespace

ItemCollection::ItemCollection(std::shared_ptr<ContactStore> store)
    : ItemCollection(std::move(store), SortOrder{ContactProperty::fileAs, 0}, {}, false) {}

ItemCollection::ItemCollection(std::shared_ptr<ContactStore> store, const SortOrder& order, Restrictions restrictions,
                               bool columnsHinted)
    : store_(std::move(store)), order_(order), restrictions_(std::move(restrictions)), columnsHinted_(columnsHinted) {
    makeList();
}

void ItemCollection::makeList() {
    if (restrictions_.empty()) {
        list_ = std::make_unique<WholeList>(store_, order_);
    } else {
        list_ = std::make_unique<MatchList>(store_, order_, restrictions_, columnsHinted_);
    }
}

HRESULT ItemCollection::QueryInterface(const IID& iid, void** out) {
    return answerInterface<IPOutlookItemCollection2>(
        this, iid, {IID_IUnknown, IID_IPOutlookItemCollection, IID_IPOutlookItemCollection2}, out);
}

HRESULT ItemCollection::Add(IDispatch** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return withinBoundary([&] {
        *out = new Contact(store_);
        return S_OK;
    });
}

HRESULT ItemCollection::get_Count(int* out) {
    if (out == nullptr) return E_POINTER;
    *out = 0;
    return withinBoundary([&] {
        std::size_t count = 0;
        if (list_->count(count) != ERROR_SUCCESS) return E_FAIL;
        *out = static_cast<int>(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
        return S_OK;
    });
}

HRESULT ItemCollection::Item(int index, IDispatch** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return withinBoundary([&] {
        CEOID oid = 0;
        std::string_view packed;
        const HRESULT result = contactAt(index, oid, packed);
        if (SUCCEEDED(result)) *out = new Contact(store_, oid, packed);
        return result;
    });
}

HRESULT ItemCollection::contactAt(int index, CEOID& oid, std::string_view& packed) {
    if (index < 1) return E_INVALIDARG;
    const DWORD error = list_->at(static_cast<std::size_t>(index) - 1, oid, packed);
    if (error == ERROR_NO_MORE_ITEMS) return E_INVALIDARG;
    return error == ERROR_SUCCESS ? S_OK : E_FAIL;
}

std::optional<Restrictions> ItemCollection::narrowedBy(BSTR restriction) const {
    std::optional<Restriction> parsed = Restriction::parse(viewOf(restriction));
    if (!parsed) return std::nullopt;
    Restrictions narrowed = restrictions_;
    narrowed.push_back(std::make_shared<const Restriction>(std::move(*parsed)));
    return narrowed;
}

HRESULT ItemCollection::Find(BSTR restriction, IDispatch** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return withinBoundary([&] {
        const std::optional<Restrictions> narrowed = narrowedBy(restriction);
        if (!narrowed) return E_INVALIDARG;
        const DWORD error = walkContacts(*store_, order_, [&](const Place& place, std::string_view packed) {
            if (!passes(*narrowed, packed)) return true;
            *out = new Contact(store_, place.record, packed);
            return false;
        });
        if (error != ERROR_SUCCESS) return E_FAIL;
        return *out != nullptr ? S_OK : S_FALSE;
    });
}

HRESULT ItemCollection::Restrict(BSTR restriction, IPOutlookItemCollection** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return withinBoundary([&] {
        std::optional<Restrictions> narrowed = narrowedBy(restriction);
        if (!narrowed) return E_INVALIDARG;
        *out = new ItemCollection(store_, order_, std::move(*narrowed), columnsHinted_);
        return S_OK;
    });
}

HRESULT ItemCollection::Remove(int index) {
    return withinBoundary([&] {
        CEOID oid = 0;
        std::string_view packed;
        const HRESULT result = contactAt(index, oid, packed);
        return SUCCEEDED(result) ? store_->erase(oid) : result;
    });
}

HRESULT ItemCollection::Sort(BSTR property, BOOL descending) {
    return withinBoundary([&] {
        const std::optional<ContactField> field = contactFieldNamed(withoutBrackets(viewOf(property)));
        if (!field) return E_INVALIDARG;
        const SortOrder order{definitionOf(*field).property, descending != FALSE ? DWORD{sortDescending} : 0};
        Session* session = store_->session();
        OrderId built = 0;
        if (session == nullptr) return E_FAIL;
        if (session->engine().openOrder(store_->database(), order, built) != ERROR_SUCCESS) return E_FAIL;
        order_ = order;
        makeList();
        return S_OK;
    });
}

HRESULT ItemCollection::SetColumns(BSTR columns) {
    return withinBoundary([&] {
        const bool hinted = !viewOf(columns).empty();
        if (hinted == columnsHinted_) return S_OK;
        columnsHinted_ = hinted;
        makeList();
        return S_OK;
    });
}

}  // namespace Platform
