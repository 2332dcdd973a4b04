# What the targets of the project are built with.

# Warnings, hardening, sanitizers and coverage, as the options of the project ask for them.
function(quorix_set_build_options target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<BOOL:${QUORIX_WARNINGS_AS_ERRORS}>:-Werror>
    # The folder of a build must not show in what is shipped.
    $<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>)

  if(QUORIX_SANITIZERS)
    target_compile_options(${target} PRIVATE
      -fsanitize=${QUORIX_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    # Tests start thousands of processes, and one starts a fifth faster with its sanitizers linked in.
    target_link_options(${target} PUBLIC -fsanitize=${QUORIX_SANITIZERS}
      $<$<CXX_COMPILER_ID:GNU>:-static-libasan;-static-libubsan>)
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

# Lets a fuzzer see which edges of the target's code an input takes. About comparisons it learns
# nothing: that would cost a third of the speed, and short words it finds without.
function(quorix_show_edges target)
  if(QUORIX_BUILD_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link
      -fno-sanitize-coverage=trace-cmp,trace-div,trace-gep)
  endif()
endfunction()
