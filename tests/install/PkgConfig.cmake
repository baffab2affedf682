# Compiles, links and runs SOURCE with nothing but what pkg-config says of the package in LIBRARY_FOLDER.
set(ENV{PKG_CONFIG_PATH} ${LIBRARY_FOLDER}/pkgconfig)
set(static)
if(KIND STREQUAL static)
  set(static --static)
endif()

execute_process(COMMAND ${PKG_CONFIG} --cflags --libs ${static} tessera
  OUTPUT_VARIABLE options OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
message(STATUS "pkg-config says: ${options}")
separate_arguments(options UNIX_COMMAND "${options}")
separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")

file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH})
execute_process(COMMAND ${COMPILER} -std=c++20 ${FLAGS} ${SOURCE} -o ${SCRATCH}/consumer ${options}
  COMMAND_ERROR_IS_FATAL ANY)
set(ENV{LD_LIBRARY_PATH} ${LIBRARY_FOLDER})
execute_process(COMMAND ${SCRATCH}/consumer COMMAND_ERROR_IS_FATAL ANY)
