# The Debian packages libtessera<interface>, libtessera-dev and tessera: the components runtime, development and tools
# of a build that is configured for /usr, as its installation puts them there. `cpack` makes them, or script/package.

set(TESSERA_MAINTAINER "The Tessera authors <tessera@example.org>" CACHE STRING "Who the Debian packages are from")
set(release 1)
set(TESSERA_DEBIAN_VERSION ${PROJECT_VERSION}-${release})
find_program(GZIP_PROGRAM gzip REQUIRED)
mark_as_advanced(GZIP_PROGRAM TESSERA_MAINTAINER)

set(packageOf_runtime libtessera${TESSERA_INTERFACE})
set(packageOf_development libtessera-dev)
set(packageOf_tools tessera)

# tessera_install_compressed(<file> <name> <folder> <component>)
#   Installs the file as <name>.gz; it may be one that the build makes.
function(tessera_install_compressed file name folder component)
  set(compressed ${PROJECT_BINARY_DIR}/compressed/${component}/${name}.gz)
  cmake_path(GET compressed PARENT_PATH compressedFolder)
  file(MAKE_DIRECTORY ${compressedFolder})
  add_custom_command(OUTPUT ${compressed}
    COMMAND ${GZIP_PROGRAM} -9 -n -c ${file} > ${compressed}
    DEPENDS ${file} VERBATIM)
  add_custom_target(tessera_${component}_${name}.gz ALL DEPENDS ${compressed})
  add_dependencies(tessera_packaged tessera_${component}_${name}.gz)
  install(FILES ${compressed} DESTINATION ${folder} COMPONENT ${component})
endfunction()

# What the packages need beside the library and the tool themselves; all of it is built by default.
add_custom_target(tessera_packaged)
configure_file(cmake/debian/changelog.in ${PROJECT_BINARY_DIR}/debian/changelog @ONLY)
set(CPACK_COMPONENTS_ALL runtime development)
if(TESSERA_BUILD_TOOL)
  list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  set(folder ${CMAKE_INSTALL_DATADIR}/doc/${packageOf_${component}})
  install(FILES cmake/debian/copyright DESTINATION ${folder} COMPONENT ${component})
  tessera_install_compressed(${PROJECT_BINARY_DIR}/debian/changelog changelog.Debian ${folder} ${component})
  tessera_install_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog ${folder} ${component})
endforeach()

# Whoever has the packages alone gets what there is to begin with.
set(folder ${CMAKE_INSTALL_DATADIR}/doc/${packageOf_development})
tessera_install_compressed(${PROJECT_SOURCE_DIR}/docs/guide.md guide.md ${folder} development)
install(FILES examples/identify.cpp examples/caller_id_service.cpp DESTINATION ${folder}/examples COMPONENT development)
if(TESSERA_BUILD_TOOL)
  set(folder ${CMAKE_INSTALL_DATADIR}/doc/${packageOf_tools})
  install(FILES examples/contacts.csv DESTINATION ${folder}/examples COMPONENT tools)
  install(FILES cmake/debian/lintian-overrides
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME ${packageOf_tools} COMPONENT tools)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessera)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each has its own
set(CPACK_PACKAGE_CONTACT ${TESSERA_MAINTAINER})
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${release})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/tessera)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

# tessera_debian_package(<component> <section> <summary> <description>)
macro(tessera_debian_package component section summary description)
  string(TOUPPER ${component} name)
  set(CPACK_DEBIAN_${name}_PACKAGE_NAME ${packageOf_${component}})
  set(CPACK_DEBIAN_${name}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${name}_DESCRIPTION "${summary}\n${description}")
endmacro()

set(whatItIs "Tessera keeps contacts with five numbers each, tells who is calling, dials by\n\
slots, has groups with ring tones of their own and a history of calls, and\n\
finds people by name, Korean initial consonants included, and by number.")
tessera_debian_package(runtime libs "embedded phone book engine - library"
  "${whatItIs}\n.\nThis package holds the library that programs need to run.")
tessera_debian_package(development libdevel "embedded phone book engine - development files"
  "${whatItIs}\n.\nThis package holds what is needed to build programs that use the library.")
tessera_debian_package(tools utils "phone book for the command line that tells who is calling"
  "${whatItIs}\n.\nThis package holds the program for people at a terminal, and for scripts.")

configure_file(cmake/debian/triggers ${PROJECT_BINARY_DIR}/debian/triggers COPYONLY)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/WithoutScripts.cmake)

set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)
include(CPack)
