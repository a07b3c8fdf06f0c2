# The toolkit for Windows, as wx::html, wx::core and wx::base: scripts/windows-toolkit builds it once and keeps it
# outside the tree.
execute_process(
  COMMAND ${CMAKE_SOURCE_DIR}/scripts/windows-toolkit ${CMAKE_TOOLCHAIN_FILE}
  OUTPUT_VARIABLE QLX_WINDOWS_TOOLKIT OUTPUT_STRIP_TRAILING_WHITESPACE
  COMMAND_ERROR_IS_FATAL ANY)
# Not the one that an earlier configuration found.
unset(wxWidgets_DIR CACHE)
find_package(wxWidgets 3.2 CONFIG REQUIRED COMPONENTS html core base
  PATHS ${QLX_WINDOWS_TOOLKIT} NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
