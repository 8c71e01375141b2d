# cmake -DOBJDUMP=PROGRAM -DMODULE=DLL -P CheckModule.cmake: fails unless the component imports only
# libraries that are part of Windows and exports its entry points under their undecorated names.
execute_process(COMMAND ${OBJDUMP} -p ${MODULE} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)

string(REGEX MATCHALL "DLL Name: [^\n\r]+" needed "${headers}")
if(NOT needed)
  message(FATAL_ERROR "Cannot read the imports of ${MODULE}")
endif()
foreach(library ${needed})
  string(REPLACE "DLL Name: " "" library "${library}")
  string(TOLOWER "${library}" name)
  # Only the compiler's libraries match this: apart from the API sets, Windows' own names have no
  # dash.
  if(name MATCHES "^lib|-" AND NOT name MATCHES "^api-ms-win-")
    message(FATAL_ERROR "${MODULE} needs ${library}, which is not part of Windows")
  endif()
endforeach()

string(REGEX REPLACE ".*\\[Ordinal/Name Pointer\\] Table" "" exports "${headers}")
foreach(entry DllGetClassObject DllCanUnloadNow DllRegisterServer DllUnregisterServer DllInstall)
  if(NOT exports MATCHES " ${entry}[\r\n]")
    message(FATAL_ERROR "${MODULE} does not export ${entry}")
  endif()
endforeach()
