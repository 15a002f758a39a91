# zuno_bundle(NAME): the plug-in for a Mac, NAME.fmplugin.
include(ZunoTbd)

set(ZUNO_FMWRAPPER_FRAMEWORKS "" CACHE PATH "Folder that holds FMWrapper.framework; else a stub of ours is linked")
set(ZUNO_LINUX_PLUGIN "" CACHE FILEPATH "A Zuno.fmx to take along: the bundle then serves FileMaker Server on Linux too")

# The host brings the library; the plug-in is linked with a list of its names: those that our headers declare.
function(zuno_link_fmwrapper target)
  if(ZUNO_FMWRAPPER_FRAMEWORKS)
    target_link_options(${target} PRIVATE -F${ZUNO_FMWRAPPER_FRAMEWORKS})
    target_link_libraries(${target} PRIVATE "-framework FMWrapper")
    return()
  endif()
  file(GLOB headers ${PROJECT_SOURCE_DIR}/fmwrapper/FMWrapper/*.h)
  set(names "")
  foreach(header IN LISTS headers)
    file(READ ${header} text)
    string(REGEX MATCHALL "FM_[A-Za-z]+_[A-Za-z0-9_]+" found "${text}")
    list(APPEND names ${found})
  endforeach()
  list(REMOVE_DUPLICATES names)
  set(stub ${CMAKE_CURRENT_BINARY_DIR}/FMWrapper.tbd)
  zuno_write_tbd(${stub} INSTALL_NAME @rpath/FMWrapper.framework/Versions/A/FMWrapper SYMBOLS ${names})
  target_link_libraries(${target} PRIVATE ${stub})
endfunction()

function(zuno_bundle name)
  set(resources ${PROJECT_SOURCE_DIR}/plugin/resources)
  set(strings ${resources}/en.lproj/Zuno.strings)
  set(exports ${PROJECT_SOURCE_DIR}/plugin/Zuno.exports)
  set(ZUNO_EXECUTABLE ${name})
  configure_file(${resources}/Info.plist.in ${CMAKE_CURRENT_BINARY_DIR}/Info.plist @ONLY)
  file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/PkgInfo "BNDL????")

  add_library(${name} MODULE ${strings})
  target_link_libraries(${name} PRIVATE zuno_settings zuno_plugin zuno_macos_store "-framework EventKit")
  zuno_link_fmwrapper(${name})
  set_target_properties(${name} PROPERTIES
    BUNDLE ON BUNDLE_EXTENSION fmplugin LINKER_LANGUAGE CXX SKIP_BUILD_RPATH ON
    MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_BINARY_DIR}/Info.plist
    LINK_DEPENDS "${exports};${strings};${ZUNO_LINUX_PLUGIN}")
  # The entry point is taken from its archive because it is named here, and nothing else leaves the file.
  target_link_options(${name} PRIVATE LINKER:-u,_FMExternCallProc LINKER:-exported_symbols_list,${exports}
    LINKER:-dead_strip LINKER:-rpath,@executable_path/../Frameworks)

  set(contents $<TARGET_BUNDLE_CONTENT_DIR:${name}>)
  set(copy COMMAND ${CMAKE_COMMAND} -E copy)
  add_custom_command(TARGET ${name} POST_BUILD
    ${copy} ${CMAKE_CURRENT_BINARY_DIR}/PkgInfo ${contents}/PkgInfo
    COMMAND ${CMAKE_COMMAND} -E make_directory ${contents}/Resources/en.lproj
    ${copy} ${strings} ${contents}/Resources/en.lproj/Zuno.strings)
  if(ZUNO_LINUX_PLUGIN)
    add_custom_command(TARGET ${name} POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E make_directory ${contents}/Resources/Linux
      ${copy} ${ZUNO_LINUX_PLUGIN} ${contents}/Resources/Linux/${name}.fmx)
  endif()
endfunction()
