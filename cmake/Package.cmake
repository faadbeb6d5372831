# The four components of the installation, and the packages that cpack creates: one with the symbols and one with
# everything else. The folders have the same layout as in the sources, so that the links in the documents stay valid.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Installs a program or library. Its debug information goes into separate files next to it, where debuggers find them:
# DWARF for gdb, and a PDB file with the public names for the debuggers of Windows.
function(ship target)
  install(TARGETS ${target}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  if(NOT MSVC)
    # The map names the archives whose code is in the program.
    target_link_options(${target} PRIVATE -Wl,-Map=${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/$<TARGET_FILE_NAME:${target}>.map)
  endif()
  if(MSVC)
    set(symbols $<TARGET_PDB_FILE:${target}>)
  elseif(CMAKE_BUILD_TYPE STREQUAL "Release")
    set(symbols ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/$<TARGET_FILE_NAME:${target}>.debug)
    set(pdb ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/$<TARGET_FILE_BASE_NAME:${target}>.pdb)
    if(ZOTDAM_CODEVIEW)
      target_link_options(${target} PRIVATE -fuse-ld=lld -Wl,--pdb=${pdb}
        -Wl,-Xlink=-pdbaltpath:%_PDB% -Wl,-Xlink=-pdbsourcepath:/ZOTDam/build/release
        -Wl,-Xlink=-natvis:${PROJECT_SOURCE_DIR}/debug/ZOTDam.natvis)
      install(FILES ${pdb} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT symbols)
    elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      # The identifier of the build connects the program with its PDB file.
      target_link_options(${target} PRIVATE -Wl,--build-id -Wl,--pdb=${pdb})
      install(FILES ${pdb} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT symbols)
    endif()
    # Without this variable, the file would contain the time of the build.
    set(objcopy ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0 ${CMAKE_OBJCOPY})
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${objcopy} --only-keep-debug $<TARGET_FILE:${target}> ${symbols}
      COMMAND ${objcopy} --strip-all --add-gnu-debuglink=${symbols} $<TARGET_FILE:${target}>
      VERBATIM)
  else()
    return()
  endif()
  install(FILES ${symbols} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT symbols)
endfunction()

# MSVC's linker needs an import library in a format that mingw's linker does not write.
if(MINGW)
  find_program(ZOTDAM_LLVM_DLLTOOL llvm-dlltool DOC "Makes the import library for MSVC, which is left out without it")
endif()
if(ZOTDAM_LLVM_DLLTOOL)
  set(definition ${PROJECT_SOURCE_DIR}/src/module/ZOTDam.def)
  set(import_library ${PROJECT_BINARY_DIR}/ZOTDam.lib)
  add_custom_command(OUTPUT ${import_library}
    COMMAND ${ZOTDAM_LLVM_DLLTOOL} -m i386:x86-64 -D ZOTDam.dll -d ${definition} -l ${import_library}
    DEPENDS ${definition}
    VERBATIM)
  add_custom_target(msvc_import_library ALL DEPENDS ${import_library})
  install(FILES ${import_library} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
endif()

set(package_config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/ZOTDam)
configure_package_config_file(cmake/ZOTDamConfig.cmake.in ${PROJECT_BINARY_DIR}/ZOTDamConfig.cmake
  INSTALL_DESTINATION ${package_config_folder}
  PATH_VARS CMAKE_INSTALL_BINDIR CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR
  NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZOTDamConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZOTDamConfig.cmake ${PROJECT_BINARY_DIR}/ZOTDamConfigVersion.cmake
  DESTINATION ${package_config_folder} COMPONENT development)

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(DIRECTORY debug schemas DESTINATION . COMPONENT development)
install(DIRECTORY samples DESTINATION . COMPONENT runtime)
install(DIRECTORY docs examples DESTINATION . COMPONENT documentation)
# package/record.py makes these two before scripts/package.sh packs them.
install(FILES ${PROJECT_BINARY_DIR}/BUILDINFO ${PROJECT_BINARY_DIR}/ZOTDam.spdx.json
  DESTINATION . COMPONENT runtime OPTIONAL)
install(FILES LICENSE THIRD-PARTY-NOTICES.txt DESTINATION . COMPONENT runtime)
install(FILES CHANGELOG.md CONTRIBUTING.md README.md SECURITY.md
  DESTINATION . COMPONENT documentation)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_VENDOR "Orlo Corporation")
set(CPACK_PACKAGE_FILE_NAME ZOTDam-${PROJECT_VERSION}-win64)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
set(CPACK_COMPONENTS_ALL runtime development documentation symbols)
foreach(component RUNTIME DEVELOPMENT DOCUMENTATION)
  set(CPACK_COMPONENT_${component}_GROUP package)
endforeach()
set(CPACK_ARCHIVE_PACKAGE_FILE_NAME ${CPACK_PACKAGE_FILE_NAME})
set(CPACK_ARCHIVE_SYMBOLS_FILE_NAME ${CPACK_PACKAGE_FILE_NAME}-symbols)
include(CPack)
