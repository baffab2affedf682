# Compares the slots of virtual functions in the classes of KEPT, which were laid out for Linux, with those in the debug
# information of OBJECT, which includes every installed header. (The compiler's list of classes, -fdump-lang-class, does
# not tell the pure virtual functions of an interface from each other.) A destructor's slots have no number in KEPT; the
# other functions' numbers leave room for them.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/Symbols.cmake)

# read_pairs(<firsts> <seconds> <file> LINES <regex> FIRST <regex> SECOND <regex>)
#   Of the file's lines that match LINES: what is found by the parentheses of FIRST, and by those of SECOND in the line
#   right behind. The two lists are of one length.
function(read_pairs firsts seconds file)
  cmake_parse_arguments(PARSE_ARGV 3 ARG "" "LINES;FIRST;SECOND" "")
  set(foundFirst)
  set(foundSecond)
  set(first "")
  file(STRINGS ${file} lines REGEX "${ARG_LINES}")
  foreach(line IN LISTS lines)
    if(line MATCHES "${ARG_FIRST}")
      set(first "${CMAKE_MATCH_1}")
      continue()
    endif()
    if(NOT first STREQUAL "" AND line MATCHES "${ARG_SECOND}")
      list(APPEND foundFirst "${first}")
      list(APPEND foundSecond "${CMAKE_MATCH_1}")
    endif()
    set(first "")
  endforeach()
  set(${firsts} "${foundFirst}" PARENT_SCOPE)
  set(${seconds} "${foundSecond}" PARENT_SCOPE)
endfunction()

# add_slots(<variable> NAMES <name>... SLOTS <slot>...): "<name> in slot <slot>" for each but destructors.
function(add_slots variable)
  cmake_parse_arguments(ARG "" "" "NAMES;SLOTS" ${ARGN})
  set(found)
  foreach(name slot IN ZIP_LISTS ARG_NAMES ARG_SLOTS)
    if(NOT name MATCHES "::~")
      list(APPEND found "${name} in slot ${slot}")
    endif()
  endforeach()
  list(REMOVE_DUPLICATES found)
  set(${variable} "${found}" PARENT_SCOPE)
endfunction()

read_pairs(slots symbols ${KEPT}
  LINES "vtable-offset=|<function-decl " FIRST "vtable-offset='([0-9]+)'" SECOND "mangled-name='([^']+)'")
demangle_kept(names ${symbols})
add_slots(kept NAMES ${names} SLOTS ${slots})

set(classes)
foreach(name IN LISTS names)
  class_of(class "${name}")
  list(APPEND classes "${class}")
endforeach()
list(REMOVE_DUPLICATES classes)

execute_process(COMMAND ${OBJDUMP} --dwarf=info ${OBJECT} OUTPUT_FILE ${SCRATCH}/classes COMMAND_ERROR_IS_FATAL ANY)
read_pairs(symbols slots ${SCRATCH}/classes
  LINES "DW_TAG_subprogram|DW_AT_linkage_name|DW_AT_vtable_elem_location"
  FIRST "DW_AT_linkage_name.*: ([^ :]+)$" SECOND "DW_OP_constu: ([0-9]+)")
demangle(names ${symbols})
add_slots(found NAMES ${names} SLOTS ${slots})
set(ours)
foreach(slot IN LISTS found)
  class_of(class "${slot}")
  if(class IN_LIST classes)
    list(APPEND ours "${slot}")
  endif()
endforeach()

list(LENGTH kept count)
if(count EQUAL 0)
  message(FATAL_ERROR "There is no virtual function in ${KEPT}.")
endif()
message(STATUS "${count} virtual functions")
set(missing ${kept})
list(REMOVE_ITEM missing ${ours} "")
list(REMOVE_ITEM ours ${kept})
fail_with("In the shared object, but not in the DLL, there is:" ${missing})
fail_with("In the DLL, but not in the shared object, there is:" ${ours})
