# Installs the build tree into a scratch prefix, then configures, builds and runs a small
# application that finds libtresk with find_package(tresk).
file(REMOVE_RECURSE ${WORK_DIR})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/prefix
  RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "install failed: ${rc}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/build
  -DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix -DCLI_SOURCE_DIR=${CLI_SOURCE_DIR}
  -DCLI_INCLUDE_DIR=${CLI_INCLUDE_DIR} RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "configure of the consumer failed: ${rc}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK_DIR}/build RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "build of the consumer failed: ${rc}")
endif()
execute_process(COMMAND ${WORK_DIR}/build/consumer RESULT_VARIABLE rc OUTPUT_VARIABLE out
  ERROR_VARIABLE err)
message(STATUS "consumer said: ${out}")
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "consumer failed: ${rc}\n${err}")
endif()
