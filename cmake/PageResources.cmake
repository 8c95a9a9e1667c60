# The page's style and script (src/netkit/formats/page/) as texts of the program, with their SHA-256 sums.
# Sets page_resources to the source that holds them.
set(page_folder ${PROJECT_SOURCE_DIR}/src/netkit/formats/page)
foreach(resource net.css page.css page.js)
  set(file ${page_folder}/${resource})
  string(TOUPPER ${resource} name)
  string(REPLACE "." "_" name ${name})
  file(READ ${file} ${name})
  file(SHA256 ${file} ${name}_SHA256)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
endforeach()
set(page_resources ${CMAKE_CURRENT_BINARY_DIR}/page_resources.cpp)
configure_file(${page_folder}/page_resources.cpp.in ${page_resources} @ONLY)
