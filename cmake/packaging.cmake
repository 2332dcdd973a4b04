# What `cmake --install` puts where. The documents keep their relative places, so that the
# links between them hold.

include(GNUInstallDirs)

function(quorix_install)
  install(TARGETS quorix RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  if(TARGET quorix-tools)
    install(TARGETS quorix-tools RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(FILES tools/formats/repeat.schema.json
      DESTINATION ${CMAKE_INSTALL_DOCDIR}/tools/formats)
  endif()
  install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md LICENSE
    DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(DIRECTORY bench/log DESTINATION ${CMAKE_INSTALL_DOCDIR}/bench)
  install(FILES tests/cli/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/tests/cli)
endfunction()
