# Compiler rules and the libraries found through pkg-config.
find_package(PkgConfig REQUIRED)
find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

# Every target of ours links this: warnings are errors.
add_library(gadget-warnings INTERFACE)
target_compile_options(gadget-warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
# GCC 12 warns of overlapping copies inside std::string's own operators once it optimises (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(gadget-warnings INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()

# Hardening, of everything we link. The checked copies need an optimiser, and the sanitizers bring checks of their own.
include(CheckPIESupported)
check_pie_supported(LANGUAGES C CXX)
add_compile_options(-fstack-protector-strong)
add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
if(NOT GADGET_SANITIZERS)
  add_compile_options($<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
endif()

if(GADGET_SANITIZERS)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# Every program of ours links this: it brings the sanitizers' options where there are sanitizers.
add_library(sanitizer-options INTERFACE)
if(GADGET_SANITIZERS)
  target_sources(sanitizer-options INTERFACE ${CMAKE_CURRENT_LIST_DIR}/sanitizer_options.cpp)
endif()

# IMPORTED_TARGET headers are system headers: the toolkit's own macros stay out of -Wconversion.
pkg_check_modules(EFL REQUIRED IMPORTED_TARGET elementary ecore ecore-evas ecore-input edje evas eina efreet)
# The toolkit's .pc files name folders that its package does not ship.
get_target_property(efl_folders PkgConfig::EFL INTERFACE_INCLUDE_DIRECTORIES)
list(REMOVE_DUPLICATES efl_folders)
set(efl_existing_folders)
foreach(folder IN LISTS efl_folders)
  if(IS_DIRECTORY ${folder})
    list(APPEND efl_existing_folders ${folder})
  endif()
endforeach()
set_target_properties(PkgConfig::EFL PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${efl_existing_folders}")
