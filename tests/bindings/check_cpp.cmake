# The C++ interface and its examples compile without a warning with each compiler and standard that
# hosts use. Arguments: COMPILERS, SOURCES, INCLUDE.
foreach(compiler IN LISTS COMPILERS)
  foreach(standard IN ITEMS 17 20)
    foreach(source IN LISTS SOURCES)
      execute_process(COMMAND ${compiler} -std=c++${standard} -fsyntax-only -I${INCLUDE}
                      -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Werror
                      -x c++ ${source} COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
  endforeach()
endforeach()
