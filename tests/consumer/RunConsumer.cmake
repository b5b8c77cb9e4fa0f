# Usage: cmake -DBUILD_DIR= -DWORK_DIR= -DPROJECT_DIR= -DCXX= [-DFLAGS=] -P RunConsumer.cmake
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGV}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

# Through the CMake package.
run(${CMAKE_COMMAND} -S ${PROJECT_DIR} -B ${WORK_DIR}/cmake-build -DCMAKE_PREFIX_PATH=${prefix}
    -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${FLAGS}")
run(${CMAKE_COMMAND} --build ${WORK_DIR}/cmake-build)
run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib ${WORK_DIR}/cmake-build/consumer)
if(NOT last_output MATCHES "tables=1 records=0")
  message(FATAL_ERROR "unexpected output of the package consumer: ${last_output}")
endif()

# Through pkg-config.
execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/lib/pkgconfig pkg-config --cflags --libs sqlantlrparser
  OUTPUT_VARIABLE pc_flags RESULT_VARIABLE rc OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "pkg-config does not know sqlantlrparser")
endif()
separate_arguments(pc_flags UNIX_COMMAND "${pc_flags}")
separate_arguments(extra UNIX_COMMAND "${FLAGS}")
run(${CXX} -std=c++17 ${extra} ${PROJECT_DIR}/main.cpp ${pc_flags} -o ${WORK_DIR}/pc-consumer)
run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib ${WORK_DIR}/pc-consumer)
if(NOT last_output MATCHES "tables=1 records=0")
  message(FATAL_ERROR "unexpected output of the pkg-config consumer: ${last_output}")
endif()
