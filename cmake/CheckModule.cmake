# cmake -DOBJDUMP=PROGRAM -DMODULE=DLL -P CheckModule.cmake: fails unless the component needs nothing but
# Windows itself and exports its entry points under their plain names.
execute_process(COMMAND ${OBJDUMP} -p ${MODULE} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)

string(REGEX MATCHALL "DLL Name: [^\n\r]+" needed "${headers}")
if(NOT needed)
  message(FATAL_ERROR "${MODULE}: its imports can't be read")
endif()
foreach(library ${needed})
  string(REPLACE "DLL Name: " "" library "${library}")
  string(TOLOWER "${library}" name)
  # The compiler's libraries are named so; Windows' have no dash but in its sets of interfaces.
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
