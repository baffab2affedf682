# Run by cpack behind the packages. It gives a package with a library two scripts that call ldconfig; ours has a trigger
# for that, as Debian wants it, and no scripts.
find_program(DPKG_DEB_PROGRAM dpkg-deb REQUIRED)
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(contents ${package}.contents)
  execute_process(COMMAND ${DPKG_DEB_PROGRAM} --raw-extract ${package} ${contents} COMMAND_ERROR_IS_FATAL ANY)
  if(EXISTS ${contents}/DEBIAN/postinst)
    file(REMOVE ${contents}/DEBIAN/postinst ${contents}/DEBIAN/postrm)
    execute_process(COMMAND ${DPKG_DEB_PROGRAM} --root-owner-group --build ${contents} ${package}
      OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  endif()
  file(REMOVE_RECURSE ${contents})
endforeach()
