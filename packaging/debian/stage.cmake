# Brings the folder from which CPack makes a Debian package into the shape that Debian asks for:
# compressed pages and changelog, a copyright file, and zsh's completions where its packages have them.
#
# Modes and times of the files are the same for every build of a commit: cpack takes the times from
# SOURCE_DATE_EPOCH where that is set.

set(root ${CPACK_TEMPORARY_DIRECTORY})
if(NOT IS_DIRECTORY ${root}/usr/share/doc/quorix)
  message(FATAL_ERROR "No documents in ${root}")
endif()
set(documents ${root}/usr/share/doc/quorix)

# Runs a command, which must succeed.
macro(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endmacro()

# The licence is in the copyright file, and the documents link to it by its name.
file(READ ${documents}/LICENSE licence)
string(REGEX REPLACE "^MIT License\n\n[^\n]*\n\n" "" licence "${licence}")
string(STRIP "${licence}" licence)
string(REPLACE "\n\n" "\n.\n" licence "${licence}")
string(REPLACE "\n" "\n " LICENSE " ${licence}")
configure_file(${QUORIX_SOURCE_DIR}/packaging/debian/copyright ${documents}/copyright @ONLY)
file(REMOVE ${documents}/LICENSE)
file(CREATE_LINK copyright ${documents}/LICENSE SYMBOLIC)

# %b and %a are in the language of the system.
set(ENV{LC_ALL} C)
string(TIMESTAMP seconds "%s" UTC)
run(date --utc --rfc-email --date=@${seconds} OUTPUT_VARIABLE day OUTPUT_STRIP_TRAILING_WHITESPACE)
file(WRITE ${documents}/changelog
  "quorix (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n"
  "  * Release ${CPACK_PACKAGE_VERSION}; CHANGELOG.md says what has changed.\n\n"
  " -- ${CPACK_PACKAGE_CONTACT}  ${day}\n")
file(GLOB pages ${root}/usr/share/man/man1/*.1)
if(NOT pages)
  message(FATAL_ERROR "A package has man pages: configure with QUORIX_BUILD_MANUAL=ON")
endif()
run(gzip -9 --no-name --force ${documents}/changelog ${pages})

file(RENAME ${root}/usr/share/zsh/site-functions ${root}/usr/share/zsh/vendor-completions)

# The mask of whoever builds must not show.
run(chmod --recursive u=rwX,go=rX ${root}/usr)
run(find ${root} -exec touch --no-dereference --date=@${seconds} "{}" +)
