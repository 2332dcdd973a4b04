# What `cmake --install` puts where.

include(GNUInstallDirs)

function(quorix_install)
  install(TARGETS quorix RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR})
endfunction()
