#pragma once

#include <functional>

#include "tessera/platform/base/Bstr.h"
#include "tessera/platform/base/ComPtr.h"
#include "tessera/platform/contacts/OutlookInterfaces.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/tools/ToolTest.h"

namespace tool_test {

/// Does something to a contact of the tool's store as another program does, through the contacts model.
inline void visitContact(const Tool& tool, const Json& oid, const std::function<HRESULT(IContact&)>& visit) {
    ASSERT_TRUE(ObjectStore::mount(tool.store().string())) << ObjectStore::errorText();
    {
        void* made = nullptr;
        ASSERT_EQ(CoCreateInstance(CLSID_Application, nullptr, CLSCTX_INPROC_SERVER, IID_IPOutlookApp, &made), S_OK);
        const auto application = ComPtr<IPOutlookApp>::adopt(static_cast<IPOutlookApp*>(made));
        ComPtr<IDispatch> item;
        ASSERT_EQ(application->Logon(0), S_OK);
        ASSERT_EQ(application->GetItemFromOid(oid.get<LONG>(), item.out()), S_OK);
        ASSERT_EQ(visit(*static_cast<IContact*>(item.get())), S_OK);
    }
    ObjectStore::unmount();
}

inline void changeContact(const Tool& tool, const Json& oid, const std::function<void(IContact&)>& change) {
    visitContact(tool, oid, [&](IContact& contact) {
        change(contact);
        return contact.Save();
    });
}

/// Deletes the contact, but nothing of what the phone book adds to it.
inline void deleteContactAlone(const Tool& tool, const Json& oid) {
    visitContact(tool, oid, [](IContact& contact) { return contact.Delete(); });
}

inline void fileUnder(const Tool& tool, const Json& oid, const CString& categories) {
    changeContact(tool, oid, [&](IContact& contact) { contact.put_Categories(Bstr(categories).get()); });
}

inline void takeNotes(const Tool& tool, const Json& oid, const CString& notes) {
    changeContact(tool, oid, [&](IContact& contact) { contact.put_Body(Bstr(notes).get()); });
}

}  // namespace tool_test
