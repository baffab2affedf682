#include "tessera/phonebook/ImportListener.h"

namespace PhoneBook {

ImportListener::~ImportListener() = default;

}  // namespace PhoneBook
