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

# Where a function overruns its frame the program ends instead of going on: everywhere but in kernels,
# which hold no frames worth the check in each row, and on Windows, where it needs one more library.
if(NOT WIN32)
  set(OVRA_STACK_FLAGS -fstack-protector-strong)
endif()

# What exports are declared like, for debuggers and for the comparison with earlier versions. Packages
# lay it aside.
if(NOT WIN32)
  set(OVRA_DEBUG_FLAGS -g)
endif()

function(ovra_add_sources)
  foreach(source IN LISTS ARGN)
    set(path ${CMAKE_CURRENT_SOURCE_DIR}/${source})
    if(source MATCHES "_sse\\.cpp$")
      set_source_files_properties(${path} TARGET_DIRECTORY ovra_objects
                                  PROPERTIES COMPILE_OPTIONS "${OVRA_SSE_FLAGS}")
    elseif(source MATCHES "_avx2\\.cpp$")
      set_source_files_properties(${path} TARGET_DIRECTORY ovra_objects
                                  PROPERTIES COMPILE_OPTIONS "${OVRA_AVX2_FLAGS}")
    elseif(NOT source MATCHES "kernels")
      set_source_files_properties(${path} TARGET_DIRECTORY ovra_objects
                                  PROPERTIES COMPILE_OPTIONS "${OVRA_STACK_FLAGS};${OVRA_DEBUG_FLAGS}")
    endif()
    target_sources(ovra_objects PRIVATE ${path})
  endforeach()
endfunction()

# For what users run. Addresses that the loader has filled in cannot be written any more, the stack
# cannot be executed, and a DLL may be loaded at any address.
add_library(ovra_hardened INTERFACE)
if(WIN32)
  target_link_options(ovra_hardened INTERFACE -Wl,--dynamicbase,--nxcompat)
else()
  target_link_options(ovra_hardened INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
endif()

# For programs.
add_library(ovra_hardened_program INTERFACE)
target_link_libraries(ovra_hardened_program INTERFACE ovra_hardened)
target_compile_options(ovra_hardened_program INTERFACE ${OVRA_STACK_FLAGS})
if(NOT OVRA_SANITIZER)
  target_compile_options(ovra_hardened_program INTERFACE
                         $<$<CONFIG:Release>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
endif()

# The same sources give the same bytes wherever they lie and whenever they are built.
add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
if(WIN32)
  add_link_options(-Wl,--no-insert-timestamp)
endif()

# Sanitizers instrument everything, the tests included.
set(OVRA_SANITIZER "" CACHE STRING "Value for -fsanitize=, or empty")
set(OVRA_SANITIZER_OPTIONS -fno-sanitize-recover=all CACHE STRING "More options of sanitizers")
if(OVRA_SANITIZER)
  add_compile_options(-fsanitize=${OVRA_SANITIZER} ${OVRA_SANITIZER_OPTIONS}
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${OVRA_SANITIZER})
endif()

# For tests, which spend more time in the compiler than running. What they test is not affected.
add_library(ovra_quick INTERFACE)
if(OVRA_SANITIZER)
  target_compile_options(ovra_quick INTERFACE -O0)
elseif(NOT CMAKE_BUILD_TYPE STREQUAL Debug)
  target_compile_options(ovra_quick INTERFACE -O1)
endif()
