# Builds an example as a program without CMake does, with what pkg-config says of the installed library, and runs it.
# In: PREFIX, SOURCE (the example), COMPILER, FOLDER (to build in).
file(MAKE_DIRECTORY ${FOLDER})
file(GLOB_RECURSE files ${PREFIX}/*/zelkon-plot.pc)
cmake_path(GET files PARENT_PATH folder)
set(ENV{PKG_CONFIG_PATH} ${folder})
execute_process(COMMAND pkg-config --cflags --libs zelkon-plot OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
execute_process(COMMAND ${COMPILER} -std=c++20 ${SOURCE} -o program ${flags} WORKING_DIRECTORY ${FOLDER}
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${FOLDER}/program WORKING_DIRECTORY ${FOLDER} COMMAND_ERROR_IS_FATAL ANY)
if(NOT EXISTS ${FOLDER}/pie.png)
  message(FATAL_ERROR "The example has written no picture")
endif()
file(GLOB_RECURSE headers RELATIVE ${PREFIX}/include ${PREFIX}/include/*)
list(FILTER headers EXCLUDE REGEX "^zelkon/[a-z]+\\.h$")
if(headers)
  message(FATAL_ERROR "Installed beside the public headers: ${headers}")
endif()
