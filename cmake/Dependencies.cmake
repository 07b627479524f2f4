# Finds the Debian packages the library is built on. The Windows cross build points
# ORMIDA_DEPS_PREFIX at its own static builds of pugixml, Hunspell and RE2 instead.
find_package(Threads REQUIRED)

find_package(pugixml CONFIG REQUIRED)

find_path(RAPIDJSON_INCLUDE_DIR rapidjson/reader.h REQUIRED)
add_library(ormida_rapidjson INTERFACE)
target_include_directories(ormida_rapidjson SYSTEM INTERFACE ${RAPIDJSON_INCLUDE_DIR})
target_compile_definitions(ormida_rapidjson INTERFACE RAPIDJSON_HAS_STDSTRING=1)

find_path(UTFCPP_INCLUDE_DIR utf8.h PATH_SUFFIXES utf8cpp REQUIRED)
add_library(ormida_utfcpp INTERFACE)
target_include_directories(ormida_utfcpp SYSTEM INTERFACE ${UTFCPP_INCLUDE_DIR})

# stb_image, header only: the Best-Of merge reads the size of a reference page image.
find_path(STB_INCLUDE_DIR stb_image.h PATH_SUFFIXES stb REQUIRED)
add_library(ormida_stb INTERFACE)
target_include_directories(ormida_stb SYSTEM INTERFACE ${STB_INCLUDE_DIR})

find_path(HUNSPELL_INCLUDE_DIR hunspell/hunspell.hxx REQUIRED)
find_library(HUNSPELL_LIBRARY NAMES hunspell-1.7 hunspell REQUIRED)
add_library(ormida_hunspell INTERFACE)
target_include_directories(ormida_hunspell SYSTEM INTERFACE ${HUNSPELL_INCLUDE_DIR})
target_link_libraries(ormida_hunspell INTERFACE ${HUNSPELL_LIBRARY})
if(WIN32)
  target_compile_definitions(ormida_hunspell INTERFACE HUNSPELL_STATIC)
endif()

# gumbo parses the hOCR that is HTML but not XML, in the tolerant mode only. The Windows
# cross build has no gumbo (its source package is not available to it): there the fallback
# is left out and refused with a message that says so.
find_path(GUMBO_INCLUDE_DIR gumbo.h)
find_library(GUMBO_LIBRARY NAMES gumbo)
add_library(ormida_gumbo INTERFACE)
if(GUMBO_INCLUDE_DIR AND GUMBO_LIBRARY)
  target_include_directories(ormida_gumbo SYSTEM INTERFACE ${GUMBO_INCLUDE_DIR})
  target_link_libraries(ormida_gumbo INTERFACE ${GUMBO_LIBRARY})
  target_compile_definitions(ormida_gumbo INTERFACE ORMIDA_HAVE_GUMBO=1)
elseif(WIN32)
  message(STATUS "gumbo not found: the tolerant hOCR mode cannot read HTML that is not XML")
  target_compile_definitions(ormida_gumbo INTERFACE ORMIDA_HAVE_GUMBO=0)
else()
  message(FATAL_ERROR "gumbo not found: install libgumbo-dev (tools/install-deps)")
endif()

# utf8proc normalises text and finds grapheme clusters for the error rates counted in
# characters as people see them. The Windows cross build has no static utf8proc yet: there
# both options are refused with a message that says so, and code points are still counted.
find_path(UTF8PROC_INCLUDE_DIR utf8proc.h)
find_library(UTF8PROC_LIBRARY NAMES utf8proc)
add_library(ormida_utf8proc INTERFACE)
if(UTF8PROC_INCLUDE_DIR AND UTF8PROC_LIBRARY)
  target_include_directories(ormida_utf8proc SYSTEM INTERFACE ${UTF8PROC_INCLUDE_DIR})
  target_link_libraries(ormida_utf8proc INTERFACE ${UTF8PROC_LIBRARY})
  target_compile_definitions(ormida_utf8proc INTERFACE ORMIDA_HAVE_UTF8PROC=1)
elseif(WIN32)
  message(STATUS "utf8proc not found: normalisation and grapheme counting are left out")
  target_compile_definitions(ormida_utf8proc INTERFACE ORMIDA_HAVE_UTF8PROC=0)
else()
  message(FATAL_ERROR "utf8proc not found: install libutf8proc-dev (tools/install-deps)")
endif()

# RE2 for the entity patterns: it matches in time linear in the text, so no configuration
# a caller writes can make the library hang.
find_path(RE2_INCLUDE_DIR re2/re2.h REQUIRED)
find_library(RE2_LIBRARY NAMES re2 REQUIRED)
add_library(ormida_re2 INTERFACE)
target_include_directories(ormida_re2 SYSTEM INTERFACE ${RE2_INCLUDE_DIR})
target_link_libraries(ormida_re2 INTERFACE ${RE2_LIBRARY} Threads::Threads)
