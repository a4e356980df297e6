# What `cmake --install` puts where: libraries, public headers, the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

set(vorquill21_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Vorquill21")

install(TARGETS vorquill21 vorquill21_static EXPORT Vorquill21Targets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)

# A header is public when the one header that hosts include needs it, by itself or through others.
set(vorquill21_headers_to_read vorquill21/vorquill21.hpp)
set(vorquill21_public_headers)
while(vorquill21_headers_to_read)
  list(POP_FRONT vorquill21_headers_to_read header)
  if(header IN_LIST vorquill21_public_headers OR header STREQUAL vorquill21/export.hpp)
    continue()
  endif()
  list(APPEND vorquill21_public_headers "${header}")
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${PROJECT_SOURCE_DIR}/${header}" COMPONENT development
          DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${header}")
  file(STRINGS "${PROJECT_SOURCE_DIR}/${header}" includes REGEX "^#include \"vorquill21/")
  list(TRANSFORM includes REPLACE "^#include \"([^\"]+)\".*" "\\1")
  list(APPEND vorquill21_headers_to_read ${includes})
endwhile()
install(FILES "${PROJECT_BINARY_DIR}/vorquill21/include/vorquill21/export.hpp" COMPONENT development
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/vorquill21")

install(EXPORT Vorquill21Targets NAMESPACE Vorquill21:: COMPONENT development
        DESTINATION "${vorquill21_package_dir}")
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/Vorquill21Config.cmake.in"
  "${PROJECT_BINARY_DIR}/Vorquill21Config.cmake" INSTALL_DESTINATION "${vorquill21_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/Vorquill21ConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/Vorquill21Config.cmake" "${PROJECT_BINARY_DIR}/Vorquill21ConfigVersion.cmake"
        COMPONENT development DESTINATION "${vorquill21_package_dir}")

# From the folder of the pkg-config file back to the prefix, so that the installed tree can be moved.
file(RELATIVE_PATH VORQUILL21_PREFIX_FROM_PC "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" VORQUILL21_PREFIX_FROM_PC "${VORQUILL21_PREFIX_FROM_PC}")
set(VORQUILL21_PRIVATE_LIBRARIES "-lstdc++ -lm")
if(WIN32)
  list(TRANSFORM vorquill21_system_libraries PREPEND "-l" OUTPUT_VARIABLE system_libraries)
  list(JOIN system_libraries " " system_libraries)
  string(APPEND VORQUILL21_PRIVATE_LIBRARIES " ${system_libraries}")
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/vorquill21.pc.in" "${PROJECT_BINARY_DIR}/vorquill21.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/vorquill21.pc" COMPONENT development
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
        COMPONENT development DESTINATION "${CMAKE_INSTALL_DOCDIR}")
