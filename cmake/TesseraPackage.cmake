# What is installed for programs that use the library: the library itself, its headers under the
# spelling that sources include them by, a CMake package and a pkg-config file.

include(CMakePackageConfigHelpers)

# tessera_describe_library(<target>)
#   Makes a target of the layers' objects what its users expect, in the build tree and installed.
function(tessera_describe_library target)
  get_property(libraries GLOBAL PROPERTY TESSERA_LIBRARIES)
  list(REMOVE_DUPLICATES libraries)
  get_property(publicHeaders GLOBAL PROPERTY TESSERA_PUBLIC_HEADERS)
  get_target_property(type ${target} TYPE)

  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME tessera EXPORT_NAME tessera LINKER_LANGUAGE CXX
    VERSION ${TESSERA_INTERFACE} SOVERSION ${TESSERA_INTERFACE})
  if(WIN32)
    set_target_properties(${target} PROPERTIES OUTPUT_NAME Tessera)
    if(type STREQUAL SHARED_LIBRARY)
      set_target_properties(${target} PROPERTIES PREFIX "")
    endif()
  endif()
  target_compile_features(${target} PUBLIC cxx_std_20)
  if(type STREQUAL STATIC_LIBRARY)
    target_compile_definitions(${target} PUBLIC TESSERA_STATIC_DEFINE)
  endif()
  target_link_libraries(${target} PRIVATE ${libraries})
  target_sources(${target} PUBLIC
    FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${publicHeaders}
    FILE_SET generatedHeaders TYPE HEADERS BASE_DIRS ${PROJECT_BINARY_DIR}/include
      FILES ${PROJECT_BINARY_DIR}/include/tessera/Export.h)
endfunction()

# tessera_package(<target> RUNTIME <component> DEVELOPMENT <component> [EXCLUDE_FROM_ALL])
#   Installs the library as the package Tessera. Component RUNTIME is what a program needs to run,
#   DEVELOPMENT what is needed to build one. EXCLUDE_FROM_ALL: only when a component is asked for.
function(tessera_package target)
  cmake_parse_arguments(ARG "EXCLUDE_FROM_ALL" "RUNTIME;DEVELOPMENT" "" ${ARGN})
  set(optional)
  if(ARG_EXCLUDE_FROM_ALL)
    set(optional EXCLUDE_FROM_ALL)
  endif()
  set(development COMPONENT ${ARG_DEVELOPMENT} ${optional})
  set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/Tessera)
  set(generated ${CMAKE_CURRENT_BINARY_DIR}/package)

  get_target_property(type ${target} TYPE)
  set(isStatic FALSE)
  if(type STREQUAL STATIC_LIBRARY)
    set(isStatic TRUE)
  endif()

  install(TARGETS ${target} EXPORT ${target}Targets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${ARG_RUNTIME} ${optional}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${ARG_RUNTIME} NAMELINK_COMPONENT ${ARG_DEVELOPMENT} ${optional}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} ${development}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${development}
    FILE_SET generatedHeaders DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${development})
  install(EXPORT ${target}Targets NAMESPACE Tessera:: FILE TesseraTargets.cmake
    DESTINATION ${packageFolder} ${development})

  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/TesseraConfig.cmake.in ${generated}/TesseraConfig.cmake
    INSTALL_DESTINATION ${packageFolder} NO_SET_AND_CHECK_MACRO)
  write_basic_package_version_file(${generated}/TesseraConfigVersion.cmake COMPATIBILITY SameMinorVersion)
  install(FILES ${generated}/TesseraConfig.cmake ${generated}/TesseraConfigVersion.cmake
    DESTINATION ${packageFolder} ${development})

  get_target_property(name ${target} OUTPUT_NAME)
  tessera_configure_pkgconfig(${generated}/tessera.pc ${name} ${isStatic})
  install(FILES ${generated}/tessera.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${development})
endfunction()

# A shared library has found its dependencies already; only who links a static one needs their names.
function(tessera_configure_pkgconfig file name isStatic)
  file(RELATIVE_PATH prefixFromFile ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
  string(REGEX REPLACE "/$" "" prefixFromFile ${prefixFromFile})
  cmake_path(APPEND includedir "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
  cmake_path(APPEND libdir "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
  if(isStatic)
    set(cflags " -DTESSERA_STATIC_DEFINE")
    set(requires " sqlite3 >= 3.37")
    if(NOT WIN32)
      string(APPEND requires " icu-i18n >= 70 icu-uc >= 70")
    endif()
    if(CMAKE_THREAD_LIBS_INIT)
      set(libs " ${CMAKE_THREAD_LIBS_INIT}")
    endif()
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/tessera.pc.in ${file} @ONLY)
endfunction()
