# Debian packages made by CPack from the install rules, one per component (each description's
# first line is the package's synopsis):
#   libvek0      runtime      the shared library (its language packs are built into it)
#   libvek-dev   development  headers, the CMake package, vek.pc, documentation and examples
#   vek-tools    tools        the vek command
#   python3-vek  python       the Python module
# "cpack -G DEB" in a Linux build tree writes them to <build>/packages. They install under /usr
# whatever prefix the tree was configured with. Dependencies on other Debian packages come from
# dpkg-shlibdeps; those among these packages are exact versions, as they are built together.
set(CPACK_PACKAGE_NAME vek)
set(CPACK_PACKAGE_VENDOR "vek")
set(CPACK_PACKAGE_CONTACT "vek developers <vek@localhost>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_GENERATOR DEB)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(TARGET vek-tool)
  list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
if(TARGET vek-python)
  list(APPEND CPACK_COMPONENTS_ALL python)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# libvek0 says which versions of it satisfy programs built against this one (its shlibs file).
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
# The library is found in the build tree while the other packages' dependencies are worked out;
# it belongs to no installed package yet, and libvek0 is named explicitly instead.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(vek_exact "libvek${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libvek${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
string(CONCAT CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "Common library of a calibration suite for multi-projector displays\n"
    "Status codes with messages in English, German, French and Japanese, output channels and a\n"
    "rotating debug log, calibration file formats, geometry, meshes and grids, camera lens models,\n"
    "lookup tables, an on-disk option store, and the calibration path from measured spot grids to\n"
    "each projector's warp mesh and blend.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvek-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${vek_exact}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "pkg-config")
string(CONCAT CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Development files of the vek library\n"
    "C++20 headers in /usr/include/vek, the CMake package (find_package(vek) gives vek::vek) and\n"
    "vek.pc for pkg-config.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME vek-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${vek_exact}")
string(CONCAT CPACK_COMPONENT_TOOLS_DESCRIPTION
    "The vek command: calibration warps and blends, lens files, warp meshes, options\n"
    "vek warp computes every projector's warp mesh and blend from a calibration folder; vek demo\n"
    "calibrates a made-up wall and judges the result. It also maps points through lens files,\n"
    "describes warp mesh files, reads and writes the option store and explains status codes.")

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-vek)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
if(VEK_PYTHON_VERSION)
  string(REGEX REPLACE "^3\\.([0-9]+)$" "\\1" vek_python_minor ${VEK_PYTHON_VERSION})
  math(EXPR vek_python_next "${vek_python_minor} + 1")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
      "${vek_exact}, python3 (>= ${VEK_PYTHON_VERSION}), python3 (<< 3.${vek_python_next}), python3-numpy")
endif()
string(CONCAT CPACK_COMPONENT_PYTHON_DESCRIPTION
    "Python module of the vek library\n"
    "import vek: lens models on numpy arrays, warp meshes, the calibration path, the option store\n"
    "as a mapping, and vek.Error for every failure.")

include(CPack)
