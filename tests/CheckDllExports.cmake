# Fails unless a Windows binary imports only system DLLs (plus EXTRA_IMPORTS) and, when
# EXPORTS is given, exports exactly those functions. Reads `objdump -p` (OBJDUMP).
cmake_policy(VERSION 3.25)
execute_process(COMMAND ${OBJDUMP} -p ${BINARY} OUTPUT_VARIABLE dump RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${OBJDUMP} -p failed on ${BINARY}")
endif()

# A static C++ runtime leaves only the operating system's own libraries to import; a
# libstdc++-6.dll, libgcc_s_seh-1.dll or libwinpthread-1.dll here would not be on a
# caller's machine.
set(system_dlls kernel32.dll msvcrt.dll shlwapi.dll advapi32.dll user32.dll shell32.dll
    ole32.dll ws2_32.dll bcrypt.dll ntdll.dll)
string(REGEX MATCHALL "DLL Name: [^\r\n]+" import_lines "${dump}")
set(imports "")
foreach(line IN LISTS import_lines)
  string(REGEX REPLACE "^DLL Name: " "" name "${line}")
  string(TOLOWER "${name}" lower)
  list(APPEND imports ${name})
  if(NOT lower IN_LIST system_dlls AND NOT lower MATCHES "^api-ms-win-"
     AND NOT name IN_LIST EXTRA_IMPORTS)
    message(FATAL_ERROR "${BINARY} imports ${name}, which is not a system DLL "
                        "(imports: ${imports})")
  endif()
endforeach()
if(NOT imports)
  message(FATAL_ERROR "no imports found in the objdump output of ${BINARY}")
endif()
message(STATUS "imports: ${imports}")

if(DEFINED EXPORTS)
  string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table\r?\n([^\r\n]+\r?\n)*" table "${dump}")
  string(REGEX MATCHALL "\\[[ 0-9]+\\][ \t]+[^\r\n]+" entries "${table}")
  set(names "")
  foreach(entry IN LISTS entries)
    string(REGEX MATCH "\\[[ 0-9]+\\][ \t]+([^\r\n]+)" ignored "${entry}")
    list(APPEND names ${CMAKE_MATCH_1})
  endforeach()
  # Exports without a name (by ordinal only) would not be in the name table; count the
  # address table too.
  string(REGEX MATCHALL "[\r\n][ \t]*\\[[ 0-9]+\\] \\+base\\[[ 0-9]+\\] [0-9a-fA-F]+ [A-Za-z]+ RVA"
         addresses "${dump}")
  list(LENGTH addresses address_count)
  list(SORT names)
  set(expected ${EXPORTS})
  list(SORT expected)
  list(LENGTH expected expected_count)
  if(NOT names STREQUAL expected OR NOT address_count EQUAL expected_count)
    message(FATAL_ERROR "exports of ${BINARY} differ:\n  got      ${names} "
                        "(${address_count} addresses)\n  expected ${expected}")
  endif()
  message(STATUS "exports: ${names}")
endif()
