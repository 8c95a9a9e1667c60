# Finds the solver Z3 with its C++ interface: by its own package file, where it was installed with one, else by its header
# and library. Defines Z3_FOUND and the target z3::libz3, which is what Z3's own package file calls it.
find_package(Z3 CONFIG QUIET)
if(NOT TARGET z3::libz3)
  find_path(Z3_INCLUDE_DIR z3++.h PATH_SUFFIXES z3)
  find_library(Z3_LIBRARY NAMES z3 libz3)
  mark_as_advanced(Z3_INCLUDE_DIR Z3_LIBRARY)
endif()

include(FindPackageHandleStandardArgs)
if(TARGET z3::libz3)
  find_package_handle_standard_args(Z3 CONFIG_MODE)
else()
  find_package_handle_standard_args(Z3
    REQUIRED_VARS Z3_LIBRARY Z3_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "netkit needs it (Debian: libz3-dev), or build siphons alone with -DSIPHONS_NETKIT=OFF")
  if(Z3_FOUND)
    add_library(z3::libz3 UNKNOWN IMPORTED)
    set_target_properties(z3::libz3 PROPERTIES
      IMPORTED_LOCATION "${Z3_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${Z3_INCLUDE_DIR}")
  endif()
endif()
