# Fails unless the shared library's dynamic symbol table defines exactly the eight exports.
execute_process(COMMAND nm -D --defined-only ${LIBRARY} OUTPUT_VARIABLE symbols
                RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()
string(REGEX MATCHALL "[ \t][TtWw] [^\n]+" functions "${symbols}")
set(names "")
foreach(line IN LISTS functions)
  string(REGEX REPLACE "^[ \t][TtWw] " "" name "${line}")
  list(APPEND names ${name})
endforeach()
list(SORT names)
set(expected OrmidaGetVersion OrmidaGetVersionText OrmidaJobCreate OrmidaJobExecute
    OrmidaJobFree OrmidaJobGetErrorText OrmidaJobGetProperty OrmidaJobSetProperty)
if(NOT names STREQUAL expected)
  message(FATAL_ERROR "exported functions differ:\n  got      ${names}\n  expected ${expected}")
endif()
message(STATUS "exports: ${names}")
