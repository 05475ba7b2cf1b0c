# Warnings are errors, in every target.
add_compile_options(-Wall -Wextra -Wpedantic -Werror -Wshadow -Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # g++ 12 reports false positives of these from inside the standard library at -O2 and above.
  add_compile_options(-Wno-restrict -Wno-stringop-overflow -Wno-array-bounds -Wno-maybe-uninitialized)
endif()
# Interfaces of the contract have no virtual destructor: nobody deletes through them.
add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-non-virtual-dtor>)

if(QAL_SANITIZE)
  add_compile_options(-fsanitize=${QAL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  # Objects of another module may come with tables that carry no type record.
  if(QAL_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize=vptr)
  endif()
  add_link_options(-fsanitize=${QAL_SANITIZE})
endif()

find_program(QAL_CCACHE ccache)
if(QAL_CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${QAL_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${QAL_CCACHE})
endif()
