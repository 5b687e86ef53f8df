# Warnings and sanitizers shared by every target of the project.
add_library(qm_options INTERFACE)
target_compile_options(qm_options INTERFACE
  -Wall -Wextra -Wno-unused-parameter -Wno-missing-field-initializers)

# CI builds with warnings as errors; a user's own build (perhaps with a
# newer compiler that warns of more) does not.
option(QM_WERROR "Treat compiler warnings as errors" OFF)
if(QM_WERROR)
  target_compile_options(qm_options INTERFACE -Werror)
endif()

if(QM_SANITIZE)
  set(QM_SANITIZER_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_compile_options(${QM_SANITIZER_FLAGS})
  add_link_options(${QM_SANITIZER_FLAGS})
endif()

# Modules are unloaded at run time, so they must not carry unique symbols
# that pin them in memory, and they export only what the host asks for.
function(qm_module target)
  set_target_properties(${target} PROPERTIES
    PREFIX "" CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    BUILD_RPATH "$ORIGIN" INSTALL_RPATH "$ORIGIN")
  target_compile_options(${target} PRIVATE -fno-gnu-unique)
  target_link_options(${target} PRIVATE -Wl,--no-undefined)
endfunction()
