# Makes the packages of BUILD below FOLDER, and installs them with dpkg into FOLDER/root. That is another system with
# the packages that this one has, so that dpkg looks at what ours depend on. No privileges are needed for it.
set(root ${FOLDER}/root)
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${root}/var/lib/dpkg/info ${root}/var/lib/dpkg/updates ${root}/var/lib/dpkg/triggers)
file(READ /var/lib/dpkg/status status)
# What somebody has installed of an earlier version here does not count.
string(REPLACE ";" "|" names "${PACKAGES}")
string(REGEX REPLACE "Package: (${names})\n([^\n]+\n)*\n" "" status "${status}")
file(WRITE ${root}/var/lib/dpkg/status "${status}")

execute_process(COMMAND ${CPACK} --config ${BUILD}/CPackConfig.cmake -B ${FOLDER}/packages
  OUTPUT_VARIABLE said ERROR_VARIABLE said RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "${said}")
endif()

file(GLOB packages ${FOLDER}/packages/*.deb)
set(ENV{PATH} "$ENV{PATH}:/usr/sbin:/sbin")
execute_process(COMMAND dpkg --root=${root} --log=${FOLDER}/log --force-not-root --install ${packages}
  OUTPUT_VARIABLE said ERROR_VARIABLE complained RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "${said}${complained}")
endif()

foreach(package IN LISTS PACKAGES)
  execute_process(COMMAND dpkg-query --admindir=${root}/var/lib/dpkg --show --showformat
      "\${Package} \${Status}, depends on \${Depends}" ${package}
    OUTPUT_VARIABLE status ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
  message(STATUS "${status}")
  if(NOT status MATCHES "install ok installed")
    message(FATAL_ERROR "${package} is not installed")
  endif()
endforeach()
