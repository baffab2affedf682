# Compares the binary interface of LIBRARY, a build with debug information, with the one that is kept in KEPT:
# the exported functions, the types that they work on, the slots of the virtual ones. With RENEW it is kept instead.
# What is of the standard library, or not in one of HEADERS (joined by commas), does not count.
set(headers ${SCRATCH}/headers)  # by their names alone it is told which types are ours to show
set(found ${SCRATCH}/libtessera.abi)
file(REMOVE_RECURSE ${SCRATCH})
string(REPLACE "," ";" HEADERS "${HEADERS}")
file(COPY ${HEADERS} DESTINATION ${headers})
execute_process(
  COMMAND ${ABIDW} --headers-dir ${headers} --suppressions ${CMAKE_CURRENT_LIST_DIR}/libtessera.suppr
    --exported-interfaces-only --drop-private-types --drop-undefined-syms
    --no-architecture --no-comp-dir-path --no-corpus-path --no-elf-needed --no-parameter-names --no-show-locs
    --no-write-default-sizes --type-id-style hash --out-file ${found} ${LIBRARY}
  COMMAND_ERROR_IS_FATAL ANY)

# Where the tree was built is nobody's business.
file(READ ${found} interface)
string(REGEX REPLACE "path='[^']*/tessera/" "path='tessera/" interface "${interface}")
file(WRITE ${found} "${interface}")

# A class that is only declared is equal to any other: with such ones nothing would be compared.
foreach(class IN ITEMS IContact Table Iterator PhoneBookDBMgr PBRecord)
  if(NOT interface MATCHES "class-decl name='${class}' size-in-bits=")
    message(FATAL_ERROR "The debug information of ${LIBRARY} does not say what ${class} is made of.")
  endif()
endforeach()

if(RENEW)
  file(COPY_FILE ${found} ${KEPT})
  message(STATUS "renewed ${KEPT}")
  return()
endif()

execute_process(COMMAND ${ABIDIFF} ${KEPT} ${found} OUTPUT_VARIABLE difference RESULT_VARIABLE result)
if(result EQUAL 0)
  return()
endif()
message("${difference}")
math(EXPR breaks "${result} & 8")
set(consequence "")
if(breaks)
  set(consequence " Programs that are linked would not run with it: raise TESSERA_INTERFACE in CMakeLists.txt as well.")
endif()
message(FATAL_ERROR "The library's binary interface is not the one that is kept in ${KEPT}. If that is meant, renew it "
  "with: cmake --build --preset release --target renew_interface.${consequence}")
