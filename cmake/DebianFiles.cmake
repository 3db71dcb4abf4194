# Run by CPack over the files that it has gathered, before it packs them: adds the copyright file and
# the changelog, compresses what Debian wants compressed, makes links relative and gives every file
# one time, so that the same sources make the same package.
set(stage ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr)
set(sources ${CPACK_QUAV_SOURCES})
set(doc ${stage}/share/doc/quav)

# The paragraph of another package's copyright file that begins so, without its last line end.
function(paragraph package beginning result)
  set(path /usr/share/doc/${package}/copyright)
  file(READ ${path} text)
  string(FIND "${text}" "\n\n${beginning}\n" begin)
  if(begin LESS 0)
    message(FATAL_ERROR "${path} has no paragraph “${beginning}”")
  endif()
  math(EXPR begin "${begin} + 2")
  string(SUBSTRING "${text}" ${begin} -1 text)
  string(FIND "${text}" "\n\n" end)
  string(SUBSTRING "${text}" 0 ${end} text)
  string(STRIP "${text}" text)
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

# What the headers that are compiled in ask to be told, in the words of the packages they come from.
paragraph(libcli11-dev "Files: *" cli11)
paragraph(libexpected-dev "Files: *" expected)
paragraph(libcli11-dev "License: BSD-3-clause" bsd)
paragraph(libexpected-dev "License: CC0-1.0" cc0)
string(REPLACE "Files: *" "Files: CLI11/*" cli11 "${cli11}")
string(REPLACE "Files: *" "Files: tl-expected/*" expected "${expected}")
set(INCLUDED_FILES "${cli11}\n\n${expected}\n")
set(INCLUDED_LICENSES "${bsd}\n\n${cc0}")

file(READ ${sources}/LICENSE MIT_TEXT)
string(REGEX REPLACE "^MIT License\n\nCopyright[^\n]*\n\n" "" MIT_TEXT "${MIT_TEXT}")
string(REPLACE "\n\n" "\n.\n" MIT_TEXT "${MIT_TEXT}")
string(REPLACE "\n" "\n " MIT_TEXT " ${MIT_TEXT}")
string(REGEX REPLACE " $" "" MIT_TEXT "${MIT_TEXT}")
configure_file(${sources}/data/debian/copyright.in ${doc}/copyright @ONLY)

configure_file(${sources}/data/debian/changelog ${doc}/changelog COPYONLY)
file(GLOB manuals ${stage}/share/man/man1/*.1)
execute_process(COMMAND gzip -9nf ${doc}/changelog ${manuals} COMMAND_ERROR_IS_FATAL ANY)

file(GLOB links ${stage}/libexec/quav/tools/*)
foreach(link IN LISTS links)
  if(IS_SYMLINK ${link})
    file(READ_SYMLINK ${link} target)
    file(RELATIVE_PATH target /usr/libexec/quav/tools ${target})
    file(CREATE_LINK ${target} ${link} SYMBOLIC)
  endif()
endforeach()

if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND dpkg-parsechangelog -l ${sources}/data/debian/changelog -S Timestamp
                  OUTPUT_VARIABLE time OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(ENV{SOURCE_DATE_EPOCH} ${time}) # for the archive's own times
endif()
execute_process(COMMAND find ${CPACK_TEMPORARY_INSTALL_DIRECTORY}
                             -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +
                COMMAND_ERROR_IS_FATAL ANY)
