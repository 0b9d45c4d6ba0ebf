# SPDX-License-Identifier: BSD-3-Clause
# Run by CPack between installing and packaging: what a Debian package wants beyond `cmake --install`.
foreach(component runtime development tools)
    set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr)
    string(TOUPPER ${component} upper)
    set(doc ${root}/share/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
    file(MAKE_DIRECTORY ${doc})

    # Documents of the project go to the package's own directory; its licence is in the copyright file.
    file(GLOB documents ${root}/share/doc/ZEFTOVBlaModule/*)
    foreach(document ${documents})
        file(COPY ${document} DESTINATION ${doc})
    endforeach()
    file(REMOVE_RECURSE ${root}/share/doc/ZEFTOVBlaModule)
    file(REMOVE ${doc}/LICENSE ${doc}/CHANGELOG.md)

    file(COPY_FILE ${CPACK_BLA_DEBIAN_DIR}/copyright ${doc}/copyright)
    file(COPY_FILE ${CPACK_BLA_DEBIAN_DIR}/changelog ${doc}/changelog.Debian)
    file(COPY_FILE ${CPACK_BLA_SOURCE_DIR}/CHANGELOG.md ${doc}/changelog)
    file(GLOB_RECURSE pages ${root}/share/man/*)
    execute_process(COMMAND gzip -9n ${doc}/changelog ${doc}/changelog.Debian ${pages} COMMAND_ERROR_IS_FATAL ANY)

    # In the system's directories the programs need no run path.
    file(GLOB programs ${root}/bin/*)
    foreach(program ${programs})
        file(RPATH_REMOVE FILE ${program})
    endforeach()
endforeach()
