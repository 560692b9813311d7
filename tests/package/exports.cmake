# Fails if the library at LIBRARY shows more than the classes of the headers in INCLUDE. Templates of
# the standard library are visible by its own declaration, whatever we ask for.
file(GLOB headers ${INCLUDE}/tintwerk/*.h)
foreach(header ${headers})
  file(STRINGS ${header} lines REGEX "^ *(class|struct) TINTWERK_API ")
  foreach(line ${lines})
    string(REGEX REPLACE ".*TINTWERK_API ([A-Za-z0-9_]+).*" "\\1" class "${line}")
    list(APPEND classes ${class})
  endforeach()
endforeach()
list(JOIN classes "|" classes)
set(class "(Gdiplus::|tintwerk::)?(${classes})")

execute_process(COMMAND ${NM} -DC --defined-only ${LIBRARY}
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")
set(methods 0)
foreach(symbol ${symbols})
  string(REGEX REPLACE "^[0-9a-f]+ " "" symbol "${symbol}")
  if(symbol MATCHES "^[TW] ${class}::")
    math(EXPR methods "${methods} + 1")
  elseif(NOT symbol MATCHES "^[VDR] (vtable|typeinfo|typeinfo name) for ${class}$"
      AND NOT symbol MATCHES "^T _(init|fini)$"
      AND NOT (symbol MATCHES "^[VWu] .*(std|__gnu_cxx)::" AND NOT symbol MATCHES "tintwerk::"))
    message(SEND_ERROR "exported: ${symbol}")
  endif()
endforeach()
if(methods LESS 100)
  message(SEND_ERROR "only ${methods} methods of ${class} are exported")
endif()
