# A room as a library, whose headers stand alone.
#
# quorix_add_room(<name> SOURCES <file>... HEADERS <file>... USES <library>...)
#
# Includes are written from `quorix_include_root`, which the caller sets.
function(quorix_add_room name)
  cmake_parse_arguments(PARSE_ARGV 1 room "" "" "SOURCES;HEADERS;USES")
  add_library(${name} STATIC ${room_SOURCES})
  target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${quorix_include_root}
    FILES ${room_HEADERS})
  target_link_libraries(${name} PUBLIC ${room_USES})
  set_target_properties(${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
  quorix_set_build_options(${name})
  quorix_show_edges(${name})
endfunction()
