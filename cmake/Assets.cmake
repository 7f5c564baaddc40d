# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later

# The resource trees of assets and translation. The aliases are the names that QML and the font loader
# use; the files keep their published names.

set(_assets "")
function(_asset resource file)
    set(_assets "${_assets}    <file alias=\"${resource}\">${file}</file>\n" PARENT_SCOPE)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
endfunction()

foreach(_name IN ITEMS fa/sign-in.svg fa/sign-out.svg fa/times.svg fa/check.svg fa/signal-stream.svg
        icons/loading.svg icons/warning.svg icons/info.svg icons/confirmation.svg icons/close.svg
        icons/error.svg icons/app.ico
        logos/logo-green.svg logos/logo-red.svg logos/plenar.svg logos/lumenboard.svg
        fonts/MavenPro-Black.ttf fonts/MavenPro-Bold.ttf fonts/MavenPro-Medium.ttf
        fonts/MavenPro-Regular.ttf)
    _asset("${_name}" "${CMAKE_SOURCE_DIR}/${_name}")
endforeach()

_asset("fonts/Font Awesome 5 Brands-Regular-400.otf" "${CMAKE_SOURCE_DIR}/fonts/fa-brands-400.ttf")
_asset("fonts/Font Awesome 5 Free-Regular-400.otf" "${CMAKE_SOURCE_DIR}/fonts/fa-regular-400.ttf")
_asset("fonts/Font Awesome 5 Free-Solid-900.otf" "${CMAKE_SOURCE_DIR}/fonts/fa-solid-900.ttf")
foreach(_face IN ITEMS Pro-Light-300 Pro-Regular-400 Pro-Solid-900 Duotone-Solid-900)
    set(_file "${LUMENBOARD_PRO_FONTS_DIR}/Font Awesome 5 ${_face}.otf")
    if(LUMENBOARD_PRO_FONTS_DIR AND EXISTS "${_file}")
        _asset("fonts/Font Awesome 5 ${_face}.otf" "${_file}")
    endif()
endforeach()

file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/assets.qrc" CONTENT
"<RCC>
  <qresource prefix=\"/\">
${_assets}  </qresource>
</RCC>
")

set(_qm "${CMAKE_BINARY_DIR}/i18n/lumenboard.de.qm")
set(_ts "${CMAKE_SOURCE_DIR}/i18n/lumenboard_de.ts")
file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/i18n")
add_custom_command(OUTPUT "${_qm}"
    COMMAND Qt5::lrelease -silent "${_ts}" -qm "${_qm}"
    DEPENDS "${_ts}"
    COMMENT "Building the German translation")
file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/translation.qrc" CONTENT
"<RCC>
  <qresource prefix=\"/i18n\">
    <file alias=\"lumenboard.de.qm\">${_qm}</file>
  </qresource>
</RCC>
")
# By hand, because qt5_add_resources cannot depend on a generated file.
add_custom_command(OUTPUT "${CMAKE_BINARY_DIR}/qrc_translation.cpp"
    COMMAND Qt5::rcc --name translation --format-version 3
            --output "${CMAKE_BINARY_DIR}/qrc_translation.cpp" "${CMAKE_BINARY_DIR}/translation.qrc"
    DEPENDS "${_qm}" "${CMAKE_BINARY_DIR}/translation.qrc"
    COMMENT "Compiling the translation tree")

qt5_add_resources(LUMENBOARD_ASSET_SOURCES "${CMAKE_BINARY_DIR}/assets.qrc"
    OPTIONS --format-version 3)
list(APPEND LUMENBOARD_ASSET_SOURCES "${CMAKE_BINARY_DIR}/qrc_translation.cpp")
