# The files that a Linux desktop reads, and the Debian package. Needs `homepage`, `released`, the release date,
# and `released_in_words`, the same in the format of a mail header.

# configure_gzipped(FROM NAME RESULT): configures FROM and compresses it to NAME.gz, as Debian requires
# for documentation; without gzip it only configures it. Sets RESULT to the path.
function(configure_gzipped from name result)
  configure_file(${from} ${name} @ONLY)
  set(${result} ${CMAKE_CURRENT_BINARY_DIR}/${name} PARENT_SCOPE)
  find_program(GZIP_PROGRAM gzip)
  if(GZIP_PROGRAM)
    execute_process(COMMAND ${GZIP_PROGRAM} -9nkf ${name}
                    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR} COMMAND_ERROR_IS_FATAL ANY)
    set(${result} ${CMAKE_CURRENT_BINARY_DIR}/${name}.gz PARENT_SCOPE)
  endif()
endfunction()

configure_file(linux/tessel.metainfo.xml.in org.example.tessel.metainfo.xml @ONLY)
configure_gzipped(linux/tessel.1.in tessel.1 manual_page)
configure_gzipped(linux/changelog.in changelog changelog)

set(icon_themes ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES linux/tessel.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/org.example.tessel.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${manual_page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
set(documents ${CMAKE_INSTALL_DATADIR}/doc/tessel)
install(FILES linux/copyright ${changelog} ../docs/guide.md ../docs/format.md ../SECURITY.md
        DESTINATION ${documents})
install(DIRECTORY ../docs/pictures DESTINATION ${documents})
install(FILES icons/tessel.svg DESTINATION ${icon_themes}/scalable/apps)
foreach(size 16 24 32 48 64 128 256)
  install(FILES icons/tessel-${size}.png RENAME tessel.png
          DESTINATION ${icon_themes}/${size}x${size}/apps)
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_NAME tessel)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "viewer and extractor for FAT12 and FAT16 disk images")
set(CPACK_PACKAGE_DESCRIPTION
"Tessel opens raw images of floppy disks and partitions with a FAT12 or
FAT16 file system, shows everything on them (boot sector, FAT,
directories with long names, files as text or as hexadecimal dumps) and
extracts files and directories from them.
.
It is made for images that are old, odd and often damaged: it shows the
bytes as they are and never writes to an image.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Tessel developers <tessel@example.org>")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${homepage})
# The fonts that the display is designed for, the renderer for SVG icon themes in dialogs, and what a
# Wayland desktop without an X server needs.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-liberation, libqt6svg6, qt6-wayland")
include(CPack)
