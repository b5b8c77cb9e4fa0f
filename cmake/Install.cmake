# Installation: headers, the two libraries, the CLI, a CMake package
# (find_package(SQLAntlrParser CONFIG REQUIRED), target
# SQLAntlrParser::SQLAntlrParser) and a pkg-config file (sqlantlrparser).
include(CMakePackageConfigHelpers)

set(SQLANTLR_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/SQLAntlrParser)

install(TARGETS SchemaModel SQLAntlrParser EXPORT SQLAntlrParserTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS sqlantlr RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/SchemaModel ${PROJECT_SOURCE_DIR}/include/SQLAntlrParser
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT SQLAntlrParserTargets NAMESPACE SQLAntlrParser:: DESTINATION ${SQLANTLR_CMAKE_DIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/SQLAntlrParserConfig.cmake.in
  ${PROJECT_BINARY_DIR}/SQLAntlrParserConfig.cmake INSTALL_DESTINATION ${SQLANTLR_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/SQLAntlrParserConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/SQLAntlrParserConfig.cmake ${PROJECT_BINARY_DIR}/SQLAntlrParserConfigVersion.cmake
  DESTINATION ${SQLANTLR_CMAKE_DIR})

configure_file(${PROJECT_SOURCE_DIR}/cmake/sqlantlrparser.pc.in ${PROJECT_BINARY_DIR}/sqlantlrparser.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/sqlantlrparser.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
