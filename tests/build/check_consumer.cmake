# Installs into a folder, then configures, builds and runs a project that knows nothing but that
# folder. Arguments: BUILD, CONSUMER, WORK, TOOLCHAIN (may be empty), CONFIG.
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/installed
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -G Ninja -S ${CONSUMER} -B ${WORK}/build
                -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_BUILD_TYPE=${CONFIG}
                -DOvraBase_ROOT=${WORK}/installed -DCMAKE_FIND_ROOT_PATH=${WORK}/installed
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build OUTPUT_QUIET
                COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ctest --test-dir ${WORK}/build --output-on-failure
                --no-tests=error COMMAND_ERROR_IS_FATAL ANY)

# pkg-config finds the same tree; only natively, since it knows no emulator.
find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG AND NOT TOOLCHAIN)
  file(GLOB_RECURSE pc ${WORK}/installed/*/OvraBase.pc)
  cmake_path(GET pc PARENT_PATH pc_dir)
  set(ENV{PKG_CONFIG_PATH} ${pc_dir})
  execute_process(COMMAND ${PKG_CONFIG} --cflags --libs OvraBase
                  OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  execute_process(COMMAND cc -std=c99 ${CONSUMER}/consumer.c ${flags} -o ${WORK}/by_pkg_config
                  COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB library ${WORK}/installed/*/libOvraBase.so ${WORK}/installed/*/*/libOvraBase.so)
  cmake_path(GET library PARENT_PATH library_dir)
  set(ENV{LD_LIBRARY_PATH} ${library_dir})
  execute_process(COMMAND ${WORK}/by_pkg_config COMMAND_ERROR_IS_FATAL ANY)
endif()
