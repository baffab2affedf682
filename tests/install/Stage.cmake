# Installs COMPONENTS of BUILD below STAGE, which is emptied first, so that nothing is found there but what
# this version installs.
file(REMOVE_RECURSE ${STAGE})
foreach(component IN LISTS COMPONENTS)
  execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${STAGE} --component ${component}
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
