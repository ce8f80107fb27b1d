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

if(GADGET_SANITIZERS)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# IMPORTED_TARGET headers are system headers: the toolkit's own macros stay out of -Wconversion.
pkg_check_modules(EFL REQUIRED IMPORTED_TARGET elementary ecore ecore-evas ecore-input edje evas eina efreet)
