# CPack runs this before it packs: brings what was installed into the packages' folders into the form that Debian asks
# for. The project's own variables come as CPACK_VORQUILL21_...
set(root "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# The library and the file that its self-tests look for beside it get a folder of their own, so that packages of
# several versions can be installed together; a link stands where libraries are looked for.
function(move_library_into_its_folder)
  set(libraries "${root}/runtime/usr/${CPACK_VORQUILL21_LIBDIR}")
  set(name "libvorquill21.so.${CPACK_PACKAGE_VERSION}")
  set(folder "${libraries}/${CPACK_VORQUILL21_PRIVATE_NAME}")
  file(MAKE_DIRECTORY "${folder}")
  file(RENAME "${libraries}/${name}" "${folder}/${name}")
  file(RENAME "${libraries}/self test" "${folder}/self test")
  file(CREATE_LINK "${CPACK_VORQUILL21_PRIVATE_NAME}/${name}" "${libraries}/${name}" SYMBOLIC)
endfunction()

function(strip_binaries)
  set(sections --remove-section=.comment --remove-section=.note)
  file(GLOB_RECURSE binaries LIST_DIRECTORIES false
       "${root}/*/usr/bin/*" "${root}/*/usr/lib/*.so" "${root}/*/usr/lib/*.so.*")
  foreach(binary IN LISTS binaries)
    if(NOT IS_SYMLINK "${binary}")
      run(strip --strip-unneeded ${sections} "${binary}")
    endif()
  endforeach()
  run(strip --strip-debug ${sections} --enable-deterministic-archives
      "${root}/development/usr/${CPACK_VORQUILL21_LIBDIR}/libvorquill21.a")
endfunction()

# The file "copyright" of each package holds the licence.
function(remove_licence)
  file(GLOB_RECURSE licences LIST_DIRECTORIES false "${root}/*/LICENSE")
  file(REMOVE ${licences})
endfunction()

# The scripts of the site are those of a package that the documentation depends on.
function(link_scripts)
  set(shared /usr/share/javascript/sphinxdoc/1.0)
  file(GLOB scripts "${root}/documentation/usr/share/doc/*/html/_static/*.js")
  foreach(script IN LISTS scripts)
    get_filename_component(name "${script}" NAME)
    if(EXISTS "${shared}/${name}")
      file(SHA256 "${script}" digest)
      file(SHA256 "${shared}/${name}" shared_digest)
      if(digest STREQUAL shared_digest)
        file(RELATIVE_PATH target /usr/share/doc/any/html/_static "${shared}/${name}")
        file(REMOVE "${script}")
        file(CREATE_LINK "${target}" "${script}" SYMBOLIC)
      endif()
    endif()
  endforeach()
endfunction()

function(compress_manuals_and_changelogs)
  file(GLOB_RECURSE files LIST_DIRECTORIES false "${root}/*/usr/share/man/*" "${root}/*/usr/share/doc/*/changelog")
  foreach(file IN LISTS files)
    run(gzip --best --no-name "${file}")
  endforeach()
endfunction()

# A build gives the same packages, whenever they are made.
function(set_times)
  if(DEFINED ENV{SOURCE_DATE_EPOCH})
    run(find "${root}" -exec touch --no-dereference --date "@$ENV{SOURCE_DATE_EPOCH}" "{}" +)
  endif()
endfunction()

move_library_into_its_folder()
strip_binaries()
remove_licence()
link_scripts()
compress_manuals_and_changelogs()
set_times()
