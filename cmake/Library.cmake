# Publishes the libraries that other projects link: KVO::core, KVO::page and their dependencies.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# kvo_publish_library(kvo_NAME HEADER...): lets other projects link the library as KVO::NAME and
# include its headers by their paths in this tree.
function(kvo_publish_library target)
  string(REPLACE kvo_ "" name ${target})
  add_library(KVO::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_sources(${target} PUBLIC
    FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${ARGN})
  if(KVO_INSTALL)
    install(TARGETS ${target} EXPORT KVOPDesignObjectsTargets
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
            FILE_SET HEADERS DESTINATION include/kvo COMPONENT dev)
  endif()
endfunction()

# kvo_export_libraries(): lets find_package(KVOPDesignObjects) find the libraries, installed or in
# the build folder.
function(kvo_export_libraries)
  if(NOT KVO_INSTALL)
    return()
  endif()
  set(made ${PROJECT_BINARY_DIR}/KVOPDesignObjects)
  set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/KVOPDesignObjects)
  file(WRITE ${made}Config.cmake
       "include(\${CMAKE_CURRENT_LIST_DIR}/KVOPDesignObjectsTargets.cmake)\n")
  write_basic_package_version_file(${made}ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/generated/common/Version.h DESTINATION include/kvo/common
          COMPONENT dev)
  install(FILES ${made}Config.cmake ${made}ConfigVersion.cmake DESTINATION ${folder} COMPONENT dev)
  install(EXPORT KVOPDesignObjectsTargets NAMESPACE KVO:: DESTINATION ${folder} COMPONENT dev)
  export(EXPORT KVOPDesignObjectsTargets NAMESPACE KVO:: FILE ${made}Targets.cmake)
endfunction()
