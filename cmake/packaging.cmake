# What `cmake --install` puts where, and the package that `cpack` makes of it. The documents keep
# their relative places, so that the links between them hold.

include(GNUInstallDirs)

set(QUORIX_PACKAGE_CONTACT "The Quorix authors <maintainers@quorix.invalid>" CACHE STRING
  "Name and address of who answers for the package")

function(quorix_install)
  install(TARGETS quorix RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  if(TARGET quorix-tools)
    install(TARGETS quorix-tools RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(FILES tools/formats/repeat.schema.json
      DESTINATION ${CMAKE_INSTALL_DOCDIR}/tools/formats)
  endif()
  install(FILES README.md CHANGELOG.md CITATION.cff CONTRIBUTING.md SECURITY.md LICENSE
    DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(DIRECTORY bench/log DESTINATION ${CMAKE_INSTALL_DOCDIR}/bench)
  if(TARGET quorix-tools)
    install(DIRECTORY workflow DESTINATION ${CMAKE_INSTALL_DATADIR}/quorix USE_SOURCE_PERMISSIONS
      PATTERN README.md EXCLUDE PATTERN __pycache__ EXCLUDE)
    install(FILES workflow/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/workflow)
    install(FILES workflow/schemas/config.schema.yaml DESTINATION ${CMAKE_INSTALL_DOCDIR}/workflow/schemas)
  endif()
  install(FILES tests/cli/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/tests/cli)
endfunction()

# What `cpack` makes: a Debian package of all that is installed.
function(quorix_package)
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGE_NAME quorix)
  set(CPACK_PACKAGE_VERSION ${QUORIX_VERSION_TEXT})
  set(CPACK_PACKAGE_CONTACT ${QUORIX_PACKAGE_CONTACT})
  set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "finder of tandem repeats in DNA sequences")
  set(CPACK_PACKAGE_DESCRIPTION
"Quorix finds the places of a FASTA file where a short pattern follows itself
several times, exactly or with mismatches, inserted bases and missing bases:
microsatellites, minisatellites and satellites. It reports position, unit,
score, perfection and alignment of every repeat.
.
The second program, quorix-tools, makes of these reports tracks for genome
browsers, catalogues for genotypers, statistics, and pages for a web browser.")
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_STRIP_FILES ON)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION science)
  set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
  # What runs the workflow.
  set(CPACK_DEBIAN_PACKAGE_SUGGESTS "snakemake (>= 7.19)")
  # The libraries that the programs are linked with, and from which version on.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_BINARY_DIR}/stage_package.cmake)
  set(QUORIX_SOURCE_DIR ${PROJECT_SOURCE_DIR})
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/stage_package.cmake CONTENT
    "set(QUORIX_SOURCE_DIR \"@QUORIX_SOURCE_DIR@\")\ninclude(\"@QUORIX_SOURCE_DIR@/packaging/debian/stage.cmake\")\n"
    @ONLY)
  include(CPack)
endfunction()
