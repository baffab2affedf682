# What programs that do the work of PhoneBookWork.h, or compare stores by StoreContents.h, are built of.
set(phoneBookWorkSources
  ${CMAKE_CURRENT_LIST_DIR}/PhoneBookWork.cpp
  ${CMAKE_CURRENT_LIST_DIR}/StoreContents.cpp
  ${CMAKE_CURRENT_LIST_DIR}/StoreFaults.cpp
  ${CMAKE_CURRENT_LIST_DIR}/operations/Parameters.cpp
  ${CMAKE_CURRENT_LIST_DIR}/operations/WorkOfOthers.cpp
  ${CMAKE_CURRENT_LIST_DIR}/operations/WorkOnContacts.cpp
  ${CMAKE_CURRENT_LIST_DIR}/operations/WorkOnGroupsAndCalls.cpp
  ${CMAKE_CURRENT_LIST_DIR}/operations/WorkOnSlots.cpp
  ${CMAKE_CURRENT_LIST_DIR}/system/$<IF:$<BOOL:${WIN32}>,Windows,Posix>FileInMemory.cpp)
