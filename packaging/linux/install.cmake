# Installs the Linux program with its desktop entry, icon and AppStream metainfo, and describes
# the Debian package that CPack builds from them.
include(GNUInstallDirs)
set(marzipel_packaging ${CMAKE_CURRENT_LIST_DIR})

install(TARGETS marzipel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT marzipel)
install(FILES ${PROJECT_SOURCE_DIR}/src/platform/linux/windows/kwin/kwin_window_reports.js
        DESTINATION ${CMAKE_INSTALL_DATADIR}/marzipel COMPONENT marzipel)
install(FILES ${marzipel_packaging}/com.orsavelt.Marzipel.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT marzipel)
install(FILES ${marzipel_packaging}/com.orsavelt.Marzipel.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT marzipel)
install(FILES ${marzipel_packaging}/com.orsavelt.Marzipel.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT marzipel)
install(DIRECTORY ${MARZIPEL_GNOME_SHELL_EXTENSION}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/gnome-shell/extensions COMPONENT marzipel)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME marzipel)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR Orsavelt)
set(CPACK_PACKAGE_CONTACT "Orsavelt <marzipel@orsavelt.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};Marzipel;marzipel;/")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Dim the keyboard and lift the night filter while a video plays full screen\n\
Marzipel sits in the system tray. When a chosen video player goes full screen it\n\
turns the keyboard backlight off and suspends GNOME Night Light or KDE Night Color,\n\
and puts both back when full screen ends. It sees full screen in X11 sessions, in\n\
KDE Plasma's Wayland session through a KWin script, in GNOME's Wayland session\n\
through a GNOME Shell extension of its own, and in Sway.")
# dpkg-shlibdeps finds the libraries the program links; Qt's X11 and Wayland platform plugins
# are loaded at run time and are named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, qt6-wayland")
# Without Qt's SVG image plugin every icon drawn from an SVG, apps' icons among them, is blank.
# Debian moved it from libqt6svg6 to qt6-svg-plugins in Qt 6.8: ask which package has it here.
set(svg_plugin ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_PLUGINS}/imageformats/libqsvg.so)
execute_process(COMMAND dpkg-query -S ${svg_plugin} OUTPUT_VARIABLE svg_plugin_owner
                RESULT_VARIABLE svg_plugin_unowned ERROR_QUIET)
if(NOT svg_plugin_unowned AND svg_plugin_owner MATCHES "^([^:,]+)")
  string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", ${CMAKE_MATCH_1}")
else()
  message(WARNING "No Debian package holds ${svg_plugin}: the package will not depend on it")
endif()
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "upower")
include(CPack)
