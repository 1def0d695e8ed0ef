# The exe's version resource, made from app/version.h, so that Windows'
# file properties and inventory tools show the version the banner prints.
# Sets KX_VERSION and KX_VERSION_RC, the generated resource script.
set(kx_version_header ${PROJECT_SOURCE_DIR}/app/version.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${kx_version_header})
file(STRINGS ${kx_version_header} kx_version_line REGEX "^#define KX_VERSION ")
if(NOT kx_version_line MATCHES "^#define KX_VERSION \"(([0-9]+)\\.([0-9]+)\\.([0-9]+))\"$")
    message(FATAL_ERROR "${kx_version_header} holds no line #define KX_VERSION \"<n>.<n>.<n>\"")
endif()
set(KX_VERSION ${CMAKE_MATCH_1})

# The numeric form, 8.4.02 as 8,4,2,0. windres reads a number with a leading 0
# as octal, so the zeros go.
set(KX_VERSION_NUMBERS "")
foreach(part ${CMAKE_MATCH_2} ${CMAKE_MATCH_3} ${CMAKE_MATCH_4})
    string(REGEX REPLACE "^0+([0-9])" "\\1" part ${part})
    string(APPEND KX_VERSION_NUMBERS "${part},")
endforeach()
string(APPEND KX_VERSION_NUMBERS "0")

set(KX_VERSION_RC ${CMAKE_CURRENT_BINARY_DIR}/version_resource.rc)
configure_file(${PROJECT_SOURCE_DIR}/app/version_resource.rc.in ${KX_VERSION_RC} @ONLY)
