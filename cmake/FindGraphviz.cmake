# Finds Graphviz as a library (gvc and cgraph), which installs no package file for CMake.
# Defines Graphviz_FOUND and the target Graphviz::gvc.
find_path(Graphviz_INCLUDE_DIR graphviz/gvc.h)
find_library(Graphviz_GVC_LIBRARY gvc)
find_library(Graphviz_CGRAPH_LIBRARY cgraph)
mark_as_advanced(Graphviz_INCLUDE_DIR Graphviz_GVC_LIBRARY Graphviz_CGRAPH_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Graphviz
  REQUIRED_VARS Graphviz_GVC_LIBRARY Graphviz_CGRAPH_LIBRARY Graphviz_INCLUDE_DIR
  REASON_FAILURE_MESSAGE "netkit draw needs it (Debian: libgraphviz-dev), or build with -DSIPHONS_GRAPHVIZ=OFF")

if(Graphviz_FOUND AND NOT TARGET Graphviz::gvc)
  add_library(Graphviz::gvc UNKNOWN IMPORTED)
  # Its headers include each other by their bare names.
  set_target_properties(Graphviz::gvc PROPERTIES
    IMPORTED_LOCATION "${Graphviz_GVC_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Graphviz_INCLUDE_DIR};${Graphviz_INCLUDE_DIR}/graphviz"
    INTERFACE_LINK_LIBRARIES "${Graphviz_CGRAPH_LIBRARY}")
endif()
