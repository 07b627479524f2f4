# Finds the Debian packages the library is built on. The Windows cross build points
# ORMIDA_DEPS_PREFIX at its own static builds of pugixml and Hunspell instead.
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
