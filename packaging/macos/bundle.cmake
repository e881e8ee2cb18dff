# Makes the macOS program a complete Marzipel.app at every build: our Info.plist (no LSUIElement:
# the full-screen detector needs a regular start, and the program drops its Dock icon itself),
# AppIcon.icns rendered from the icon the Linux package installs, Sparkle.framework copied in
# with its symbolic links, Qt deployed by macdeployqt, and an ad-hoc signature over it all.

set(MARZIPEL_SPARKLE_FEED_URL "" CACHE STRING
  "The update feed (SUFeedURL); without it and the key the updater stays off")
set(MARZIPEL_SPARKLE_PUBLIC_KEY "" CACHE STRING
  "The EdDSA public key that update archives are signed with (SUPublicEDKey)")

set(MARZIPEL_BUNDLE_DIR ${CMAKE_CURRENT_LIST_DIR})

function(marzipel_macos_bundle target sparkle_framework)
  configure_file(${MARZIPEL_BUNDLE_DIR}/Info.plist.in ${CMAKE_CURRENT_BINARY_DIR}/Info.plist @ONLY)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME Marzipel
    MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_BINARY_DIR}/Info.plist
    BUILD_RPATH "@executable_path/../Frameworks"
    INSTALL_RPATH "@executable_path/../Frameworks")

  set(icon ${PROJECT_SOURCE_DIR}/packaging/linux/com.orsavelt.Marzipel.svg)
  add_executable(marzipel-render-iconset ${MARZIPEL_BUNDLE_DIR}/render_iconset.cpp)
  target_link_libraries(marzipel-render-iconset PRIVATE Qt6::Gui Qt6::Svg)
  set(iconset ${CMAKE_CURRENT_BINARY_DIR}/AppIcon.iconset)
  set(icns ${CMAKE_CURRENT_BINARY_DIR}/AppIcon.icns)
  add_custom_command(OUTPUT ${icns}
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${iconset}
    COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
            $<TARGET_FILE:marzipel-render-iconset> ${icon} ${iconset}
    COMMAND iconutil --convert icns --output ${icns} ${iconset}
    DEPENDS marzipel-render-iconset ${icon}
    COMMENT "Rendering AppIcon.icns"
    VERBATIM)
  target_sources(${target} PRIVATE ${icns})
  set_source_files_properties(${icns} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)

  get_filename_component(qt_bin ${Qt6_DIR}/../../../bin ABSOLUTE)
  find_program(MARZIPEL_MACDEPLOYQT macdeployqt HINTS ${QT6_INSTALL_PREFIX}/bin ${qt_bin} REQUIRED)
  set(contents $<TARGET_BUNDLE_CONTENT_DIR:${target}>)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${contents}/Frameworks/Sparkle.framework
    COMMAND ${CMAKE_COMMAND} -E make_directory ${contents}/Frameworks
    COMMAND ditto ${sparkle_framework} ${contents}/Frameworks/Sparkle.framework
    COMMAND ${MARZIPEL_MACDEPLOYQT} $<TARGET_BUNDLE_DIR:${target}>
    COMMAND codesign --force --deep --sign - $<TARGET_BUNDLE_DIR:${target}>
    COMMENT "Embedding Sparkle, deploying Qt and signing Marzipel.app"
    VERBATIM)
endfunction()
