# Warnings on our own targets only; third-party code keeps its own flags. They become errors
# with ORMIDA_WERROR: on by default when Ormida is built for itself (and always in CI), off
# when it is a subproject, so a newer compiler's new warning cannot break someone else's build.
function(ormida_warnings target)
  set(werror)
  if(ORMIDA_WERROR)
    set(werror -Werror)
  endif()
  target_compile_options(${target} PRIVATE
    $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor ${werror}>
    $<$<COMPILE_LANGUAGE:C>:-Wall -Wextra -Wpedantic ${werror}>)
endfunction()

# GCC 12 at -O2 and above reports a false -Wrestrict inside libstdc++'s operator+ for
# "literal" + std::string&& (the inlined memcpy's bounds are misjudged). The library's code
# avoids that form; tests, benchmarks and fuzz drivers may use it freely, so for them the
# warning stays a warning.
function(ormida_test_warnings target)
  ormida_warnings(${target})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-error=restrict>)
  endif()
endfunction()
