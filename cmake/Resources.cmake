# Where the run-time tree is built or installed. With a root below the build folder (dev, asan) every resource is put
# there while building; with any other root (release) it is installed there.
cmake_path(IS_PREFIX CMAKE_BINARY_DIR "${GADGET_ROOT}" NORMALIZE GADGET_RUNS_FROM_BUILD)
set(GADGET_MODULE_DIR "${GADGET_ROOT}/lib")
set(GADGET_EDJE_DIR "${GADGET_ROOT}/res/edje/ug-Ostrelle-efl")
set(GADGET_IMAGE_DIR "${GADGET_ROOT}/res/images/ug-Ostrelle-efl/1920")
set(GADGET_LOCALE_DIR "${GADGET_ROOT}/res/locale")
set(GADGET_THEME_DIR "${GADGET_ROOT}/res/host")

# Where a build puts what an installation would put below GADGET_ROOT.
if(GADGET_RUNS_FROM_BUILD)
  set(GADGET_STAGE "${GADGET_ROOT}")
else()
  set(GADGET_STAGE "${CMAKE_BINARY_DIR}/ug")
endif()

configure_file(${CMAKE_SOURCE_DIR}/cmake/gadget_paths.h.in ${CMAKE_BINARY_DIR}/generated/gadget_paths.h @ONLY)
add_library(gadget-paths INTERFACE)
target_include_directories(gadget-paths INTERFACE ${CMAKE_BINARY_DIR}/generated)
