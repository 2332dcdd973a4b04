# The library for other programs: one archive or shared object with all that a search needs, its
# header, and what find_package and pkg-config read.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# Sets the variable to the objects that make up the library. They need hwy and zlib.
function(quorix_library_objects variable)
  set(rooms quorix_library_room quorix_search quorix_report quorix_sequence quorix_settings)
  list(TRANSFORM rooms REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
  set(${variable} ${objects} PARENT_SCOPE)
endfunction()

# quorix_add_library(<target> STATIC|SHARED COMPONENT <name> [EXCLUDE_FROM_ALL])
#
# The library from the objects of the rooms, and what `cmake --install` makes of it. With
# EXCLUDE_FROM_ALL only an installation of the component has it. REQUIRES: the targets of src/ are
# defined.
function(quorix_add_library target type)
  cmake_parse_arguments(PARSE_ARGV 2 library "EXCLUDE_FROM_ALL" "COMPONENT" "")
  quorix_library_objects(objects)
  add_library(${target} ${type} ${objects})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/include
    FILES ${PROJECT_SOURCE_DIR}/include/quorix/quorix.h)
  target_link_libraries(${target} PRIVATE hwy ZLIB::ZLIB)
  target_compile_features(${target} INTERFACE cxx_std_17)
  set_target_properties(${target} PROPERTIES
    LINKER_LANGUAGE CXX
    OUTPUT_NAME quorix
    EXPORT_NAME quorix
    ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${library_COMPONENT}
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${library_COMPONENT}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
  if(type STREQUAL "SHARED")
    # Objects of the rooms do not know that they become part of a library, so the linker is told what
    # others may see.
    set(exports ${PROJECT_SOURCE_DIR}/src/library/exports.map)
    target_link_options(${target} PRIVATE -Wl,--version-script=${exports} -Wl,-z,defs
      -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${exports})
  endif()
  quorix_install_library(${target} ${type} "${library_COMPONENT}" "${library_EXCLUDE_FROM_ALL}")
endfunction()

function(quorix_install_library target type component is_excluded)
  set(part COMPONENT ${component})
  if(is_excluded)
    list(APPEND part EXCLUDE_FROM_ALL)
  endif()
  set(folder ${PROJECT_BINARY_DIR}/${component})
  set(package ${CMAKE_INSTALL_LIBDIR}/cmake/Quorix)

  install(TARGETS ${target} EXPORT ${target}_export
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} ${part}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ${part}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${part})
  install(EXPORT ${target}_export NAMESPACE Quorix:: FILE QuorixTargets.cmake
    DESTINATION ${package} ${part})
  set(QUORIX_LIBRARY_TYPE ${type})
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/QuorixConfig.cmake.in
    ${folder}/QuorixConfig.cmake INSTALL_DESTINATION ${package})
  write_basic_package_version_file(${folder}/QuorixConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${folder}/QuorixConfig.cmake ${folder}/QuorixConfigVersion.cmake
    DESTINATION ${package} ${part})

  # pkg-config asks for private libraries with --static only, and of an archive every user needs them.
  set(QUORIX_OTHER_LIBRARIES "-lhwy -lz")
  if(type STREQUAL "SHARED")
    set(QUORIX_OTHER_LIBRARIES "")
  endif()
  file(RELATIVE_PATH QUORIX_PC_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/quorix.pc.in ${folder}/quorix.pc @ONLY)
  install(FILES ${folder}/quorix.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${part})
endfunction()
