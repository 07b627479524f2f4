# toolchain-mingw64.cmake - cross-builds for 64-bit Windows with MinGW-w64 on Linux.
#
# The posix thread model is the one whose libstdc++ has std::thread and std::mutex.
# ORMIDA_DEPS_PREFIX (the cross-built pugixml, Hunspell, GoogleTest and the header-only
# libraries) joins the search root, so find_package/find_path look there and never in the
# host's /usr/include. Programs run under Wine, which is how ctest runs the tests.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(ORMIDA_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER   ${ORMIDA_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ORMIDA_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER  ${ORMIDA_MINGW_TRIPLET}-windres)

# Try-compile projects run in a fresh scope; hand them the prefix too.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ORMIDA_DEPS_PREFIX)
set(CMAKE_FIND_ROOT_PATH /usr/${ORMIDA_MINGW_TRIPLET})
if(ORMIDA_DEPS_PREFIX)
  list(APPEND CMAKE_FIND_ROOT_PATH ${ORMIDA_DEPS_PREFIX})
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Every program and DLL carries its C++ runtime (libstdc++, libgcc, winpthreads) inside, so
# it runs on a machine that has only the system's DLLs, and under Wine without a path to
# MinGW's DLLs. One place for all targets, also those added later.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static-libgcc -static-libstdc++ -static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static-libgcc -static-libstdc++ -static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static-libgcc -static-libstdc++ -static")

set(CMAKE_CROSSCOMPILING_EMULATOR wine CACHE STRING "Runs the Windows programs (tests)")
