# One function for what every target of the project is built with.

# Warnings, sanitizers and coverage, as the options of the project ask for them.
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

  if(QUORIX_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic)
    target_link_options(${target} PUBLIC --coverage)
  endif()
endfunction()
