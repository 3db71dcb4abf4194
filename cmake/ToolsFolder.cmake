# The tools folder: links to the system's tools under the names that the program uses. In the build
# tree a link is made for what is there; an installation links to where Debian's packages put them,
# so that a package that comes later is found without installing again. Our own tools are
# built into it, see tools/CMakeLists.txt.
set(QUAV_TOOLS flac metaflac wavpack wvunpack lame opusdec opusenc AtomicParsley sox
               cdda2wav=icedax mkisofs=genisoimage)
set(TOOLS_DIR ${PROJECT_BINARY_DIR}/tools)
file(MAKE_DIRECTORY ${TOOLS_DIR})
foreach(entry IN LISTS QUAV_TOOLS)
  string(REGEX REPLACE "=.*" "" name ${entry})
  string(REGEX REPLACE ".*=" "" program ${entry})
  find_program(QUAV_TOOL_${name} ${program})
  if(QUAV_TOOL_${name})
    file(CREATE_LINK ${QUAV_TOOL_${name}} ${TOOLS_DIR}/${name} SYMBOLIC)
  endif()
  install(CODE "file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/libexec/quav/tools\")
                file(CREATE_LINK /usr/bin/${program}
                     \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/libexec/quav/tools/${name}\" SYMBOLIC)")
endforeach()
