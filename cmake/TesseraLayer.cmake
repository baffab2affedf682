# The library is built layer by layer. A layer is an object library that may use only the layers
# below it; libtessera is all of them together, and a test links just the layers that it tests.

# tessera_layer(<name> SOURCES ... [HEADERS ...] [USES <layer>...] [LIBRARIES <target>...])
#   HEADERS are the installed ones. USES names the layers below, LIBRARIES what comes from outside.
function(tessera_layer name)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;USES;LIBRARIES" ${ARGN})

  add_library(tessera_${name} OBJECT ${ARG_SOURCES} ${ARG_HEADERS})
  target_include_directories(tessera_${name} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/include)
  target_compile_definitions(tessera_${name} PUBLIC $<$<NOT:$<BOOL:${BUILD_SHARED_LIBS}>>:TESSERA_STATIC_DEFINE>
                             PRIVATE tessera_EXPORTS)
  target_link_libraries(tessera_${name} PUBLIC ${ARG_LIBRARIES})
  if(isForSystem AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # The order of an interface's virtual operations is in the debug information only so.
    target_compile_options(tessera_${name} PRIVATE -femit-class-debug-always)
  endif()

  # What a program needs to link this layer alone: itself and everything below it.
  set(closure ${name})
  foreach(lower IN LISTS ARG_USES)
    get_property(lowerClosure GLOBAL PROPERTY TESSERA_CLOSURE_${lower})
    list(APPEND closure ${lowerClosure})
  endforeach()
  list(REMOVE_DUPLICATES closure)
  set_property(GLOBAL PROPERTY TESSERA_CLOSURE_${name} ${closure})

  list(TRANSFORM ARG_HEADERS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  set_property(GLOBAL APPEND PROPERTY TESSERA_LAYERS ${name})
  set_property(GLOBAL APPEND PROPERTY TESSERA_PUBLIC_HEADERS ${ARG_HEADERS})
  set_property(GLOBAL APPEND PROPERTY TESSERA_LIBRARIES ${ARG_LIBRARIES})
endfunction()

# tessera_link_layers(<target> <layer>...)
#   Links the named layers, and all below them, into a program that sees their private parts too.
function(tessera_link_layers target)
  set(closure)
  foreach(layer IN LISTS ARGN)
    get_property(layerClosure GLOBAL PROPERTY TESSERA_CLOSURE_${layer})
    list(APPEND closure ${layerClosure})
  endforeach()
  list(REMOVE_DUPLICATES closure)
  list(TRANSFORM closure PREPEND tessera_)
  target_link_libraries(${target} PRIVATE ${closure})
  target_compile_definitions(${target} PRIVATE TESSERA_STATIC_DEFINE)
endfunction()

# tessera_all_objects(<variable>)
#   The objects of every layer: what a library of the whole is made of.
function(tessera_all_objects variable)
  get_property(layers GLOBAL PROPERTY TESSERA_LAYERS)
  set(objects)
  foreach(layer IN LISTS layers)
    list(APPEND objects $<TARGET_OBJECTS:tessera_${layer}>)
  endforeach()
  set(${variable} ${objects} PARENT_SCOPE)
endfunction()
