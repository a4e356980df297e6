# The Debian packages that `cpack` makes of an installation under /usr: one for each component that is built. What is
# said in words, and the files that only packages hold, are in packaging/debian.
get_cmake_property(vorquill21_components COMPONENTS)
set(vorquill21_debian "${PROJECT_SOURCE_DIR}/packaging/debian")
set(vorquill21_abi "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")
set(vorquill21_runtime_package "libvorquill21-${vorquill21_abi}")
set(vorquill21_private_name "vorquill21-${vorquill21_abi}")
set(vorquill21_private_folder "${CMAKE_INSTALL_LIBDIR}/${vorquill21_private_name}")

file(STRINGS "${vorquill21_debian}/changelog" last_change LIMIT_COUNT 1)
if(NOT last_change MATCHES "^vorquill21 \\(${PROJECT_VERSION}\\) ")
  message(FATAL_ERROR "packaging/debian/changelog does not begin with version ${PROJECT_VERSION}")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vorquill21)
set(CPACK_PACKAGE_CONTACT "The Vorquill21 authors <vorquill21@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_SOURCE_DIR}/build/packages")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS "${vorquill21_debian}/arrange.cmake")
set(CPACK_VORQUILL21_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
set(CPACK_VORQUILL21_PRIVATE_NAME "${vorquill21_private_name}")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE vorquill21)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/vorquill21")

# vorquill21_package(COMPONENT NAME SECTION section [MULTI_ARCH kind] [FIELD text]...): the package of one component, with
# its description and, where there is one, its file of overrides. A macro, as CPack reads variables of this scope.
macro(vorquill21_package component name)
  cmake_parse_arguments(of "" "SECTION;MULTI_ARCH;ARCHITECTURE;DEPENDS;RECOMMENDS;SUGGESTS" "" ${ARGN})
  string(TOUPPER "${component}" key)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME "${name}")
  file(READ "${vorquill21_debian}/${component}.description" CPACK_DEBIAN_${key}_DESCRIPTION)
  foreach(field SECTION ARCHITECTURE DEPENDS RECOMMENDS SUGGESTS)
    if(of_${field})
      set(CPACK_DEBIAN_${key}_PACKAGE_${field} "${of_${field}}")
    endif()
  endforeach()
  if(of_MULTI_ARCH)  # CPack has no variable for this field
    string(APPEND CPACK_DEBIAN_${key}_PACKAGE_SECTION "\nMulti-Arch: ${of_MULTI_ARCH}")
  endif()
  install(FILES "${vorquill21_debian}/copyright" "${vorquill21_debian}/changelog" COMPONENT ${component}
          DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/${name}")
  if(EXISTS "${vorquill21_debian}/${component}.lintian-overrides.in")
    configure_file("${vorquill21_debian}/${component}.lintian-overrides.in" "${PROJECT_BINARY_DIR}/debian/${name}" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/debian/${name}" COMPONENT ${component}
            DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides")
  endif()
endmacro()

# vorquill21_control_files(COMPONENT FILE...): what dpkg is told beside the description of the package.
macro(vorquill21_control_files component)
  string(TOUPPER "${component}" key)
  foreach(file ${ARGN})
    set(made "${PROJECT_BINARY_DIR}/debian/${component}/${file}")
    configure_file("${vorquill21_debian}/${component}.${file}.in" "${made}" @ONLY)
    list(APPEND CPACK_DEBIAN_${key}_PACKAGE_CONTROL_EXTRA "${made}")
  endforeach()
endmacro()

vorquill21_package(runtime ${vorquill21_runtime_package} SECTION libs MULTI_ARCH same)
vorquill21_control_files(runtime shlibs triggers prerm)

vorquill21_package(development libvorquill21-dev SECTION libdevel MULTI_ARCH same SUGGESTS vorquill21-doc
  DEPENDS "${vorquill21_runtime_package} (= ${PROJECT_VERSION})")

if("tools" IN_LIST vorquill21_components)
  vorquill21_package(tools vorquill21-tools SECTION science MULTI_ARCH foreign SUGGESTS vorquill21-doc
    DEPENDS "${vorquill21_runtime_package} (= ${PROJECT_VERSION})")
endif()

if("python" IN_LIST vorquill21_components)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  set(this_python "${Python3_VERSION_MAJOR}.${Python3_VERSION_MINOR}")
  math(EXPR next_minor "${Python3_VERSION_MINOR} + 1")
  vorquill21_package(python python3-vorquill21 SECTION python SUGGESTS vorquill21-doc
    DEPENDS "python3 (>= ${this_python}), python3 (<< ${Python3_VERSION_MAJOR}.${next_minor}), python3-numpy")
  vorquill21_control_files(python postinst prerm)
endif()

vorquill21_package(documentation vorquill21-doc SECTION doc ARCHITECTURE all MULTI_ARCH foreign
  DEPENDS libjs-sphinxdoc)
set(vorquill21_doc_folder "${CMAKE_INSTALL_DATAROOTDIR}/doc/vorquill21-doc")
install(FILES "${PROJECT_SOURCE_DIR}/README.md" COMPONENT documentation DESTINATION "${vorquill21_doc_folder}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" COMPONENT documentation DESTINATION "${vorquill21_doc_folder}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" COMPONENT documentation DESTINATION "${vorquill21_doc_folder}"
        FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN "*.png" PATTERN site EXCLUDE)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/build/docs/html" COMPONENT documentation OPTIONAL
        DESTINATION "${vorquill21_doc_folder}")

include(CPack)
