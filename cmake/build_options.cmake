# One function for what every target of the project is built with.

# Warnings, hardening, sanitizers and coverage, as the options of the project ask for them.
function(quorix_set_build_options target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<BOOL:${QUORIX_WARNINGS_AS_ERRORS}>:-Werror>)

  if(QUORIX_SANITIZERS)
    target_compile_options(${target} PRIVATE
      -fsanitize=${QUORIX_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=${QUORIX_SANITIZERS})
  endif()

  # What makes a memory error end the program rather than serve an attacker. Sanitizers see more, and
  # bring their own versions of these functions.
  if(NOT QUORIX_SANITIZERS)
    target_compile_options(${target} PRIVATE -fstack-protector-strong
      $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
      $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
    target_link_options(${target} PUBLIC -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
  endif()

  if(QUORIX_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic)
    target_link_options(${target} PUBLIC --coverage)
  endif()
endfunction()
