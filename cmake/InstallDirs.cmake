# Where `cmake --install` puts the program (GNUInstallDirs): the executable in
# bin/, its Qt module in lib/sheafwork/, its data in share/sheafwork/. The
# program finds the last two from its own folder (platform/program_folders.h).
include(GNUInstallDirs)

set(SHEAFWORK_INSTALL_DATADIR "${CMAKE_INSTALL_DATADIR}/sheafwork")
set(SHEAFWORK_INSTALL_MODULEDIR "${CMAKE_INSTALL_LIBDIR}/sheafwork")

foreach(dir BINDIR DATADIR MODULEDIR)
  if(dir STREQUAL "BINDIR")
    set(relative "${CMAKE_INSTALL_BINDIR}")
  else()
    set(relative "${SHEAFWORK_INSTALL_${dir}}")
  endif()
  if(IS_ABSOLUTE "${relative}")
    set(SHEAFWORK_FULL_${dir} "${relative}")
  else()
    set(SHEAFWORK_FULL_${dir} "${CMAKE_INSTALL_PREFIX}/${relative}")
  endif()
endforeach()
