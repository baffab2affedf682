# Runs the tool that was installed below ROOT, and looks at what stands beside it.
set(ENV{LD_LIBRARY_PATH} ${ROOT}/${LIBRARY_FOLDER})
set(ENV{TESSERA_STORE} ${SCRATCH}/store.db)
file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH})
file(CHMOD ${SCRATCH} DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)

# run(<expected> <program> <argument>...): what the program says must match.
function(run expected)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE said COMMAND_ERROR_IS_FATAL ANY)
  if(NOT said MATCHES "${expected}")
    message(FATAL_ERROR "${ARGN} says: ${said}")
  endif()
endfunction()

run("imported 200 of 200 lines" ${ROOT}/usr/bin/tessera import ${ROOT}/usr/share/doc/tessera/examples/contacts.csv)
run("김민수" ${ROOT}/usr/bin/tessera identify "+82 10-2345-6789")
run("keeps a phone book" gzip -dc ${ROOT}/usr/share/man/man1/tessera.1.gz)
run("complete -F _tessera tessera" bash -c
  "source '${ROOT}/usr/share/bash-completion/completions/tessera' && complete -p tessera")
run("link the library" gzip -dc ${ROOT}/usr/share/doc/libtessera-dev/guide.md.gz)
foreach(file IN ITEMS zsh/vendor-completions/_tessera doc/tessera/copyright doc/tessera/changelog.Debian.gz
    doc/libtessera-dev/examples/identify.cpp doc/libtessera-dev/examples/caller_id_service.cpp)
  if(NOT EXISTS ${ROOT}/usr/share/${file})
    message(FATAL_ERROR "${file} is missing")
  endif()
endforeach()
