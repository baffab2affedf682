#pragma once

#include <chrono>
#include <thread>
#include <utility>

#include "tests/support/TemporaryStore.h"

namespace PhoneBook {

/// A store in which somebody else is writing, so that it cannot be had.
class BusyStore {
public:
    static ObjectStore::Options impatient() {
        ObjectStore::Options options = testing_support::quickOptions();
        options.writerWait = std::chrono::milliseconds(20);
        return options;
    }
    /// Runs what another thread wants of the store meanwhile.
    template <class Body>
    static void during(Body&& body) {
        const ObjectStoreBatch writer;
        std::thread(std::forward<Body>(body)).join();
    }
};

}  // namespace PhoneBook
