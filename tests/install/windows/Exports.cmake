# Compares what LIBRARY, the DLL, exports with what the shared object exports, as it is kept in KEPT: the same functions
# and classes, and nothing else. (Inline members of a class are in who uses them, on both systems.) Of the shared object
# alone there may be:
# - the name in a class's type information, which is found through that;
# - a private class within an exported one: it has no mark of its own, and on Windows its surroundings' does not count.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/Symbols.cmake)

execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_FILE ${SCRATCH}/headers COMMAND_ERROR_IS_FATAL ANY)
# A line is `[ordinal] symbol`; later versions of the program say the ordinal once more.
set(ordinal "^\t\\[ *[0-9]+\\] (\\+base\\[ *[0-9]+\\] +[0-9a-f]+ )?")
file(STRINGS ${SCRATCH}/headers symbols REGEX "${ordinal}[^ +][^ ]*$")
list(TRANSFORM symbols REPLACE "${ordinal}" "")
demangle(exported ${symbols})

file(STRINGS ${KEPT} symbols REGEX "<elf-symbol name=")
list(TRANSFORM symbols REPLACE ".*<elf-symbol name='([^']*)'.*" "\\1")
demangle_kept(kept ${symbols})

file(READ ${KEPT} interface)
string(REGEX MATCHALL "<member-type access='private'>[ \n]*<class-decl name='[^']+'" privateClasses "${interface}")
list(TRANSFORM privateClasses REPLACE ".*name='([^']+)'" "\\1")
list(JOIN privateClasses "|" privateClasses)
if(NOT exported OR NOT kept OR NOT privateClasses)
  message(FATAL_ERROR "There is nothing to compare in ${LIBRARY} or in ${KEPT}.")
endif()

set(missing)
foreach(name IN LISTS kept)
  string(REGEX REPLACE "^typeinfo name for " "typeinfo for " described "${name}")
  class_of(class "${name}")
  if(NOT described IN_LIST exported AND NOT class MATCHES "::(${privateClasses})$")
    list(APPEND missing "${name}")
  endif()
endforeach()

set(surplus ${exported})
list(REMOVE_ITEM surplus ${kept})
list(LENGTH exported count)
message(STATUS "${count} symbols are exported")
fail_with("The shared object exports these, and the DLL does not:" ${missing})
fail_with("The DLL exports these, and the shared object does not:" ${surplus})
