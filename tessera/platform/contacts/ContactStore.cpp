#include "tessera/platform/contacts/ContactStore.h"

#include "tessera/platform/contacts/ContactProperties.h"

namespace Platform {

std::shared_ptr<ContactStore> ContactStore::open() {
    Session* session = Session::current();
    if (session == nullptr) return nullptr;
    CEOID database = 0;
    if (session->engine().findDatabase(szContactsDatabase, database) != ERROR_SUCCESS) return nullptr;
    return std::make_shared<ContactStore>(database, session->mountNumber());
}

Session* ContactStore::session() const {
    Session* session = Session::current();
    if (session == nullptr || session->mountNumber() == mountNumber_) return session;
    SetLastError(ERROR_INVALID_HANDLE);
    return nullptr;
}

HRESULT ContactStore::read(CEOID oid, std::string& packed) const {
    Session* connection = session();
    if (connection == nullptr) return E_FAIL;
    return resultOf(connection->engine().get(database_, oid, packed));
}

HRESULT ContactStore::write(CEOID& oid, std::span<const Edit> edits) const {
    if (oid != 0 && edits.empty()) {
        std::string present;
        return read(oid, present);  // nothing to write, but a contact that is gone must not seem saved
    }
    Session* connection = session();
    if (connection == nullptr) return E_FAIL;
    return resultOf(connection->put(database_, oid, edits));
}

HRESULT ContactStore::erase(CEOID oid) const {
    Session* connection = session();
    if (connection == nullptr) return E_FAIL;
    return resultOf(connection->erase(database_, oid));
}

HRESULT resultOf(DWORD error) {
    if (error == ERROR_SUCCESS) return S_OK;
    return error == ERROR_INVALID_PARAMETER ? E_INVALIDARG : E_FAIL;
}

}  // namespace Platform
