# The page of quorix-tools html, bundled from tools/page/web by Node.js.
#
# quorix_page_template(<variable>)
#
# Sets the variable to the C++ source of the page's template, and the global property QUORIX_HAS_PAGE. Where the page is not built, that is a
# source with an empty one. The packages are installed into the build folder, once for each state of
# the lock file; the source folder is not written to.

include(GNUInstallDirs)

set(QUORIX_BUILD_PAGE AUTO CACHE STRING
  "Build the page of quorix-tools html (Node.js 18 and npm are needed): ON, OFF, or AUTO where that works")

# Sets the variable to what hinders the page, or to an empty text if the packages are there.
function(quorix_install_page_packages variable web_folder package_folder)
  set(${variable} "" PARENT_SCOPE)
  find_program(QUORIX_NODE node)
  find_program(QUORIX_NPM npm)
  if(NOT QUORIX_NODE OR NOT QUORIX_NPM)
    set(${variable} "Node.js or npm is not installed" PARENT_SCOPE)
    return()
  endif()

  # What was installed is the lock file that the stamp is a copy of.
  set(stamp ${package_folder}/node_modules/.installed.json)
  file(SHA256 ${web_folder}/package-lock.json wanted)
  set(installed "")
  if(EXISTS ${stamp})
    file(SHA256 ${stamp} installed)
  endif()
  if(installed STREQUAL wanted)
    return()
  endif()

  message(STATUS "Installing the packages of the page")
  file(COPY ${web_folder}/package.json ${web_folder}/package-lock.json
    DESTINATION ${package_folder})
  execute_process(
    COMMAND ${QUORIX_NPM} ci --ignore-scripts --no-audit --no-fund --loglevel=error
      --prefer-offline --fetch-retries=1
    WORKING_DIRECTORY ${package_folder}
    TIMEOUT 300
    RESULT_VARIABLE status
    OUTPUT_QUIET
    ERROR_VARIABLE messages)
  if(NOT status EQUAL 0)
    string(STRIP "${messages}" messages)
    set(${variable} "npm could not install its packages (${status}): ${messages}" PARENT_SCOPE)
    return()
  endif()
  # Whether this Node.js can make the page is seen now, while it can still be left out.
  execute_process(
    COMMAND ${QUORIX_NODE} ${web_folder}/build.mjs ${package_folder}/node_modules
      ${package_folder}/page_template.cpp ${package_folder}/THIRD-PARTY-NOTICES.txt
    RESULT_VARIABLE status
    OUTPUT_QUIET
    ERROR_VARIABLE messages)
  if(NOT status EQUAL 0)
    string(STRIP "${messages}" messages)
    set(${variable} "Node.js could not bundle it (${status}): ${messages}" PARENT_SCOPE)
    return()
  endif()
  configure_file(${web_folder}/package-lock.json ${stamp} COPYONLY)
endfunction()

function(quorix_page_template variable)
  set(${variable} page/no_page_template.cpp PARENT_SCOPE)
  if(NOT QUORIX_BUILD_PAGE)
    return()
  endif()

  set(web_folder ${PROJECT_SOURCE_DIR}/tools/page/web)
  set(package_folder ${PROJECT_BINARY_DIR}/tools/page)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${web_folder}/package-lock.json)
  quorix_install_page_packages(hindrance ${web_folder} ${package_folder})
  if(hindrance AND QUORIX_BUILD_PAGE STREQUAL "AUTO")
    message(STATUS "The page of quorix-tools html is left out: ${hindrance}")
    return()
  elseif(hindrance)
    message(FATAL_ERROR "The page of quorix-tools html cannot be built: ${hindrance}")
  endif()

  set(sources charts data density density_fields details download filter main overview repeat_list
    repeats table theme windows)
  list(TRANSFORM sources REPLACE "(.+)" "${web_folder}/src/\\1.js")
  set(output ${package_folder}/page_template.cpp)
  add_custom_command(
    OUTPUT ${output}
    BYPRODUCTS ${package_folder}/THIRD-PARTY-NOTICES.txt
    COMMAND ${QUORIX_NODE} ${web_folder}/build.mjs ${package_folder}/node_modules ${output}
      ${package_folder}/THIRD-PARTY-NOTICES.txt
    DEPENDS ${sources} ${web_folder}/build.mjs ${web_folder}/template.html
      ${web_folder}/src/style.css ${package_folder}/node_modules/.installed.json
    COMMENT "Bundling the page of quorix-tools html"
    VERBATIM)
  # The page is one string, and longer than the standard asks compilers to take.
  set_source_files_properties(${output} PROPERTIES
    COMPILE_OPTIONS -Wno-overlength-strings SKIP_UNITY_BUILD_INCLUSION ON)
  install(FILES ${package_folder}/THIRD-PARTY-NOTICES.txt DESTINATION ${CMAKE_INSTALL_DOCDIR})
  set(${variable} ${output} PARENT_SCOPE)
  set_property(GLOBAL PROPERTY QUORIX_HAS_PAGE ON)
endfunction()
