# Compiles, links and runs SOURCE with nothing but what pkg-config says of the package in LIBRARY_FOLDER. For another
# system than this one there is an EMULATOR.
set(ENV{PKG_CONFIG_PATH} ${LIBRARY_FOLDER}/pkgconfig)
set(static)
if(KIND STREQUAL static)
  set(static --static)
endif()

execute_process(COMMAND ${PKG_CONFIG} --cflags --libs ${static} tessera
  OUTPUT_VARIABLE options OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
message(STATUS "pkg-config says: ${options}")
separate_arguments(options UNIX_COMMAND "${options}")
if(EMULATOR)
  # Our library is found in its DLL; the compiler's own are put into the program, which would look for theirs in vain.
  set(options -static -Wl,-Bdynamic ${options} -Wl,-Bstatic)
endif()
separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")

file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH})
set(program ${SCRATCH}/consumer${SUFFIX})
execute_process(COMMAND ${COMPILER} -std=c++20 ${FLAGS} ${SOURCE} -o ${program} ${options}
  COMMAND_ERROR_IS_FATAL ANY)
set(ENV{LD_LIBRARY_PATH} ${LIBRARY_FOLDER})
file(GLOB besideProgram ${LIBRARY_FOLDER}/../bin/*.dll)
file(COPY ${besideProgram} DESTINATION ${SCRATCH})
execute_process(COMMAND ${EMULATOR} ${program} COMMAND_ERROR_IS_FATAL ANY)
