# What the scripts beside this one share: the interface that is kept in KEPT is that of Linux, where the same types
# have other names. SCRATCH is a folder to work in.
file(MAKE_DIRECTORY ${SCRATCH})

# demangle(<variable> <symbol>...)
#   The symbols as C++ spells them, in the same order.
function(demangle variable)
  list(JOIN ARGN "\n" symbols)
  file(WRITE ${SCRATCH}/symbols "${symbols}\n")
  execute_process(COMMAND ${CXXFILT} INPUT_FILE ${SCRATCH}/symbols
    OUTPUT_VARIABLE names OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "\n" ";" names "${names}")
  string(REPLACE "long long" "int64" names "${names}")
  set(${variable} "${names}" PARENT_SCOPE)
endfunction()

# demangle_kept(<variable> <symbol>...)
#   The same of symbols of Linux, with the types that stand for theirs on Windows. A `long` of Windows, which is
#   shorter than one of Linux, stands for none.
function(demangle_kept variable)
  demangle(names ${ARGN})
  string(REPLACE "char16_t" "wchar_t" names "${names}")
  string(REGEX REPLACE "([(<, ])long([]>),&* ])" "\\1int64\\2" names "${names}")
  set(${variable} "${names}" PARENT_SCOPE)
endfunction()

# class_of(<variable> <name>): the class or namespace that the named function is a member of.
function(class_of variable name)
  set(${variable} "" PARENT_SCOPE)
  if(name MATCHES "^([^(]*)::[^:(]+\\(")
    set(${variable} "${CMAKE_MATCH_1}" PARENT_SCOPE)
  endif()
endfunction()

# fail_with(<message> <line>...): unless there is no line.
function(fail_with message)
  if(ARGN)
    list(JOIN ARGN "\n  " lines)
    message(SEND_ERROR "${message}\n  ${lines}")
  endif()
endfunction()
