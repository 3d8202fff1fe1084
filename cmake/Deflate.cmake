# libdeflate (deflate for PDF streams, inflate for plot style tables), linked
# from its static archive where one is installed: each shared library the
# program needs adds to the start of every run. The archive is built as
# position-independent code, so the Qt module can take it too.
# Windows has no libdeflate package here: zlib (libz-mingw-w64-dev) there.
if(WIN32)
  set(ZLIB_USE_STATIC_LIBS ON)
  find_package(ZLIB REQUIRED)
  add_library(Sheafwork::Deflate ALIAS ZLIB::ZLIB)
  return()
endif()
find_path(SHEAFWORK_DEFLATE_INCLUDE libdeflate.h REQUIRED)
find_library(SHEAFWORK_DEFLATE_ARCHIVE NAMES libdeflate.a)
if(SHEAFWORK_DEFLATE_ARCHIVE)
  add_library(Sheafwork::Deflate STATIC IMPORTED GLOBAL)
  set_target_properties(Sheafwork::Deflate PROPERTIES
    IMPORTED_LOCATION ${SHEAFWORK_DEFLATE_ARCHIVE}
    INTERFACE_INCLUDE_DIRECTORIES ${SHEAFWORK_DEFLATE_INCLUDE})
else()
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(LibDeflate REQUIRED IMPORTED_TARGET GLOBAL libdeflate)
  add_library(Sheafwork::Deflate ALIAS PkgConfig::LibDeflate)
endif()
