#include "tessera/database/schema/RecordDef.h"

namespace Database {

RecordDef::~RecordDef() = default;

}  // namespace Database
