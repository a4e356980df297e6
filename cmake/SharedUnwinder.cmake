# On 32-bit Windows an error finds its way from one module to another only when both have the compiler's unwinder from one
# library: that is linked into the shared library and, through it, into hosts, lies beside the library, and is installed.
# vorquill21_shared_runtime names the libraries that have to lie beside a host.
set(vorquill21_shared_runtime)
if(MINGW AND CMAKE_SIZEOF_VOID_P EQUAL 4)
  foreach(name libgcc_s_dw2-1.dll libwinpthread-1.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${name} OUTPUT_VARIABLE file
                    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    get_filename_component(file "${file}" REALPATH)
    list(APPEND vorquill21_shared_runtime "${file}")
  endforeach()
  target_link_libraries(vorquill21 PUBLIC stdc++ gcc_s)  # ahead of the static unwinder, which finds nothing left to do
  add_custom_command(TARGET vorquill21 POST_BUILD VERBATIM
    COMMAND "${CMAKE_COMMAND}" -E copy_if_different ${vorquill21_shared_runtime} "$<TARGET_FILE_DIR:vorquill21>")
  if(VORQUILL21_INSTALL)
    foreach(file IN LISTS vorquill21_shared_runtime)
      get_filename_component(name "${file}" NAME)
      install(FILES "$<TARGET_FILE_DIR:vorquill21>/${name}" DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
    endforeach()
  endif()
endif()
set_property(TARGET vorquill21 PROPERTY VORQUILL21_SHARED_RUNTIME ${vorquill21_shared_runtime})
