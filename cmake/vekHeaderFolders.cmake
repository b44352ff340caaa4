# Header-only libraries that Debian installs as one folder of /usr/include (stb/, CLI/). The
# Windows cross-build must not search /usr/include itself, since the host's C headers would shadow
# mingw's, so the build tree exposes just that folder through a link of its own.
#   vek_use_header_folder(TARGET FOLDER PROBE)   e.g. vek_use_header_folder(vek stb stb_image_write.h)
function(vek_use_header_folder target folder probe)
  string(TOUPPER "VEK_${folder}_PARENT_DIR" parent)
  find_path(${parent} ${folder}/${probe} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  set(exposed ${PROJECT_BINARY_DIR}/third-party-include)
  if(NOT EXISTS ${exposed}/${folder}/${probe})
    file(MAKE_DIRECTORY ${exposed})
    file(CREATE_LINK ${${parent}}/${folder} ${exposed}/${folder} SYMBOLIC COPY_ON_ERROR)
  endif()
  target_include_directories(${target} SYSTEM PRIVATE ${exposed})
endfunction()
