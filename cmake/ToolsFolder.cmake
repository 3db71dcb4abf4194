# The tools folder: links to the system's tools under the names that the program uses. Those of the
# build tree follow at every build what is there then; an installation links to where Debian's
# packages put them, so that a package that comes later is found without installing again. Our own
# tools are built into it, see tools/CMakeLists.txt.
include(cmake/ToolsTable.cmake)
set(table ${PROJECT_SOURCE_DIR}/src/engine/Tools.inc)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${table})
quav_read_tools(${table})

add_custom_target(tools_folder ALL
    COMMAND ${CMAKE_COMMAND} -DTABLE=${table} -DFOLDER=${PROJECT_BINARY_DIR}/tools
            -P ${PROJECT_SOURCE_DIR}/cmake/LinkTools.cmake
    COMMENT "Linking the tools that are there" VERBATIM)

foreach(tool IN LISTS QUAV_TOOLS)
  install(CODE "file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/libexec/quav/tools\")
                file(CREATE_LINK /usr/bin/${QUAV_TOOL_PROGRAM_${tool}}
                     \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/libexec/quav/tools/${tool}\" SYMBOLIC)")
endforeach()
