#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "tests/examples/Caller.h"
#include "tests/support/Builders.h"
#include "tests/support/Process.h"
#include "tests/support/TemporaryStore.h"

namespace caller_id_service {

inline testing_support::Command serviceAt(const std::filesystem::path& socket, const std::string& store) {
    return {.program = CALLER_ID_SERVICE,
            .arguments = {socket.string()},
            .environment = {{"TESSERA_STORE", store}, {"TESSERA_DURABILITY", "normal"}, {"LC_ALL", "C.UTF-8"}}};
}

/// Waits until a service that was started says that it listens; throws when it does not.
inline void awaitListening(testing_support::Process& service) {
    std::string said;
    while (!said.ends_with('\n')) {
        const auto more = service.read(patience);
        if (!more || more->empty()) throw std::runtime_error("the service does not listen: " + service.wait().err);
        said += *more;
    }
}

/// A phone book that this process works on, and the service that runs beside it.
class ServedPhoneBook {
public:
    ServedPhoneBook() { awaitListening(service_); }

    std::filesystem::path socket() const { return store_.folder() / "callers"; }
    std::string store() const { return store_.path(); }
    testing_support::Process& service() { return service_; }

    testing_support::OpenPhoneBook& phoneBook() { return phoneBook_; }
    PhoneBook::PhoneBookDBMgr* operator->() { return &phoneBook_.manager(); }

private:
    testing_support::TemporaryStore store_;
    testing_support::OpenPhoneBook phoneBook_;
    testing_support::Process service_{serviceAt(socket(), store())};
};

}  // namespace caller_id_service
