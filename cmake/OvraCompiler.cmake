# Compiler settings shared by everything that is built here.

# GCC 12 takes inlined copies of std::string for overlapping ones: -Wrestrict cannot be trusted there.
add_library(ovra_warnings INTERFACE)
target_compile_options(ovra_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wcast-qual -Wformat=2 -Wundef -Wvla
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual>
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes -Wmissing-prototypes>
  $<$<BOOL:${OVRA_WARNINGS_AS_ERRORS}>:-Werror>)

# Results must not depend on the platform. Contraction would fuse a multiplication with an addition
# and change double results; on 32-bit x86 arithmetic is done in SSE2 registers, not in the wider x87
# ones. Windows hosts may call with a stack aligned to 4 bytes only, so functions realign it.
add_library(ovra_arithmetic INTERFACE)
target_compile_options(ovra_arithmetic INTERFACE -ffp-contract=off)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  target_compile_options(ovra_arithmetic INTERFACE -msse2 -mfpmath=sse -mstackrealign)
endif()

# The flags of a kernel file follow from the end of its name. No other file may use these
# instructions: the processor is asked before a kernel is called.
set(OVRA_SSE_FLAGS -msse4.1)
set(OVRA_AVX2_FLAGS -mavx2)

function(ovra_add_sources)
  foreach(source IN LISTS ARGN)
    set(path ${CMAKE_CURRENT_SOURCE_DIR}/${source})
    if(source MATCHES "_sse\\.cpp$")
      set_source_files_properties(${path} TARGET_DIRECTORY ovra_objects
                                  PROPERTIES COMPILE_OPTIONS "${OVRA_SSE_FLAGS}")
    elseif(source MATCHES "_avx2\\.cpp$")
      set_source_files_properties(${path} TARGET_DIRECTORY ovra_objects
                                  PROPERTIES COMPILE_OPTIONS "${OVRA_AVX2_FLAGS}")
    endif()
    target_sources(ovra_objects PRIVATE ${path})
  endforeach()
endfunction()

# Sanitizers instrument everything, the tests included.
set(OVRA_SANITIZER "" CACHE STRING "Value for -fsanitize=, or empty")
if(OVRA_SANITIZER)
  add_compile_options(-fsanitize=${OVRA_SANITIZER} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${OVRA_SANITIZER})
endif()
