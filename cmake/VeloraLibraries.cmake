# The outside libraries, each found once and given a name that says what it is.
find_package(PkgConfig REQUIRED)
find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)

pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(SIMPLEINI REQUIRED IMPORTED_TARGET simpleini)
pkg_check_modules(SODIUM REQUIRED IMPORTED_TARGET libsodium)
pkg_check_modules(PUGIXML REQUIRED IMPORTED_TARGET pugixml)
pkg_check_modules(ICU REQUIRED IMPORTED_TARGET icu-i18n icu-uc)
pkg_check_modules(FREETYPE REQUIRED IMPORTED_TARGET freetype2)
pkg_check_modules(HARFBUZZ REQUIRED IMPORTED_TARGET harfbuzz)
pkg_check_modules(HARFBUZZ_SUBSET REQUIRED IMPORTED_TARGET harfbuzz-subset)
pkg_check_modules(DEFLATE REQUIRED IMPORTED_TARGET libdeflate)
pkg_check_modules(JPEG REQUIRED IMPORTED_TARGET libturbojpeg)
pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0)
pkg_check_modules(FONTCONFIG REQUIRED IMPORTED_TARGET fontconfig)

# Zint comes without a description of itself.
find_library(ZINT_LIBRARY zint REQUIRED)
find_path(ZINT_INCLUDE_DIR zint.h REQUIRED)
add_library(Zint::Zint UNKNOWN IMPORTED)
set_target_properties(Zint::Zint PROPERTIES
    IMPORTED_LOCATION ${ZINT_LIBRARY} INTERFACE_INCLUDE_DIRECTORIES ${ZINT_INCLUDE_DIR})

# Loaded at run time by what uses it: only its headers are needed here.
pkg_check_modules(CURL REQUIRED libcurl>=7.87)
add_library(velora_curl_headers INTERFACE)
target_include_directories(velora_curl_headers SYSTEM INTERFACE ${CURL_INCLUDE_DIRS})
pkg_check_modules(CAIRO REQUIRED cairo cairo-ft)
add_library(velora_cairo_headers INTERFACE)
target_include_directories(velora_cairo_headers SYSTEM INTERFACE ${CAIRO_INCLUDE_DIRS})
pkg_check_modules(GSF REQUIRED IMPORTED_TARGET libgsf-1)  # linked by tests alone, which read workbooks back
add_library(velora_gsf_headers INTERFACE)
target_include_directories(velora_gsf_headers SYSTEM INTERFACE ${GSF_INCLUDE_DIRS})
pkg_check_modules(PICTURES REQUIRED gdk-pixbuf-2.0 librsvg-2.0)
add_library(velora_picture_headers INTERFACE)
target_include_directories(velora_picture_headers SYSTEM INTERFACE ${PICTURES_INCLUDE_DIRS})
find_path(QPDF_INCLUDE_DIR qpdf/qpdf-c.h REQUIRED)
add_library(velora_qpdf_headers INTERFACE)
target_include_directories(velora_qpdf_headers SYSTEM INTERFACE ${QPDF_INCLUDE_DIR})
find_path(CUPS_INCLUDE_DIR cups/cups.h REQUIRED)
add_library(velora_cups_headers INTERFACE)
target_include_directories(velora_cups_headers SYSTEM INTERFACE ${CUPS_INCLUDE_DIR})
