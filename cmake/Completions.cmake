# The completions for shells, from the options as the programs know them, where Debian's shells look.
# Other programs have the names of our tools: no file here has a name that would be theirs. bash reads
# “_NAME” where no package brings “NAME”, zsh knows ours by their folder, and for fish a file that is
# always read leads to theirs.
set(completions ${PROJECT_BINARY_DIR}/completions)
file(MAKE_DIRECTORY ${completions})
set(made)

# Makes a file and installs it below share; what follows are further arguments.
function(quav_completion shell path)
  get_filename_component(name ${path} NAME)
  get_filename_component(folder ${path} DIRECTORY)
  set(file ${completions}/${shell}-${name})
  list(SUBLIST ARGN 1 1 depends)
  add_custom_command(OUTPUT ${file} COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C
                     $<TARGET_FILE:quav-cli> --completion ${shell} ${ARGN} > ${file}
                     DEPENDS quav-cli ${depends} VERBATIM)
  install(FILES ${file} DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder} RENAME ${name})
  set(made ${made} ${file} PARENT_SCOPE)
endfunction()

set(bash bash-completion/completions)
set(zsh zsh/vendor-completions)
set(fish fish/vendor_completions.d)
quav_completion(bash ${bash}/quav-cli)
quav_completion(zsh ${zsh}/_quav-cli)
quav_completion(fish ${fish}/quav-cli.fish)
foreach(tool mac shntool shorten ttaenc)
  set(options ${completions}/${tool}.options)
  add_custom_command(OUTPUT ${options} COMMAND ${tool} --describe-options > ${options}
                     DEPENDS ${tool} VERBATIM)
  quav_completion(bash ${bash}/_${tool} --completion-of ${options})
  quav_completion(zsh ${zsh}/_quav-${tool} --completion-of ${options})
  quav_completion(fish fish/vendor_functions.d/__quav_${tool}_at.fish --completion-of ${options})
endforeach()
install(FILES data/quav-tools.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_conf.d)
add_custom_target(completions ALL DEPENDS ${made})
