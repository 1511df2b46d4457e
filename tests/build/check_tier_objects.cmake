# The files of a tier may define nothing that another translation unit could take instead of its own
# copy: that copy would run wider instructions on processors without them. Arguments: NM, OBJECTS.
set(found 0)
foreach(object IN LISTS OBJECTS)
  if(object MATCHES "_(sse|avx2)\\.cpp\\.")
    math(EXPR found "${found} + 1")
    execute_process(COMMAND ${NM} --defined-only --demangle ${object} OUTPUT_VARIABLE symbols
                    COMMAND_ERROR_IS_FATAL ANY)
    # Weak functions; instantiations that bear a tier's name exist in that tier alone.
    string(REGEX MATCHALL "[^\n]* W [^\n]*" shared "${symbols}")
    list(FILTER shared EXCLUDE REGEX "(Sse|Avx2)<")
    if(shared)
      message(FATAL_ERROR "${object} defines shared symbols:\n${shared}")
    endif()
  endif()
endforeach()
if(found EQUAL 0)
  message(FATAL_ERROR "no file of a tier among the objects")
endif()
message(STATUS "${found} files of tiers keep to themselves")
