# Man pages and completions, which are made from what the programs print for --help.
#
# quorix_manual()
#
# Without bash and awk, or where the programs are for another processor and cannot be run, they are
# left out. A run of a program that counts its lines would spoil the counts.

include(GNUInstallDirs)

set(QUORIX_BUILD_MANUAL AUTO CACHE STRING
  "Make man pages and completions (bash and awk are needed): ON, OFF, or AUTO where that works")
set(QUORIX_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING
  "Folder of the completions for zsh, below the prefix")

function(quorix_manual)
  if(NOT QUORIX_BUILD_MANUAL OR QUORIX_COVERAGE)
    return()
  endif()
  find_program(QUORIX_BASH bash)
  find_program(QUORIX_AWK awk)
  if(NOT QUORIX_BASH OR NOT QUORIX_AWK OR CMAKE_CROSSCOMPILING)
    if(NOT QUORIX_BUILD_MANUAL STREQUAL "AUTO")
      message(FATAL_ERROR "Man pages need bash, awk and programs that can be run here")
    endif()
    message(STATUS "Man pages and completions are left out: bash, awk or programs for this processor are missing")
    return()
  endif()

  set(source_folder ${PROJECT_SOURCE_DIR}/packaging/manual)
  set(output_folder ${PROJECT_BINARY_DIR}/manual)
  set(programs quorix)
  if(TARGET quorix-tools)
    list(APPEND programs quorix-tools)
  endif()
  list(TRANSFORM programs REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE program_files)
  set(parts bash_completion.awk make.sh manual_page.awk quorix.1.in read_help.awk readme_facts.awk
    roff.awk zsh_completion.awk)
  list(TRANSFORM parts PREPEND ${source_folder}/)
  add_custom_command(
    OUTPUT ${output_folder}/complete
    COMMAND ${QUORIX_BASH} ${source_folder}/make.sh ${output_folder} ${QUORIX_VERSION_TEXT}
      ${program_files}
    COMMAND ${CMAKE_COMMAND} -E touch ${output_folder}/complete
    DEPENDS ${programs} ${parts} ${PROJECT_SOURCE_DIR}/README.md
    COMMENT "Making man pages and completions"
    VERBATIM)
  add_custom_target(quorix_manual ALL DEPENDS ${output_folder}/complete)

  install(DIRECTORY ${output_folder}/man1 DESTINATION ${CMAKE_INSTALL_MANDIR})
  install(DIRECTORY ${output_folder}/bash/
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(DIRECTORY ${output_folder}/zsh/ DESTINATION ${QUORIX_ZSH_COMPLETIONS})
endfunction()
