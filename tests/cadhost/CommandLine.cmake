cmake_minimum_required(VERSION 3.25)
# cadhost's own command line: --version names the product and its version,
# --help points to the reference in the source tree, and a run without a
# script is refused before the host starts, so no settings store is made.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})

execute_process(COMMAND ${CADHOST} --version RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 0 OR NOT out STREQUAL "cadhost (Quillmark) ${VERSION}\n")
  message(FATAL_ERROR "cadhost --version exited with ${status} and printed:\n${out}${err}")
endif()

execute_process(COMMAND ${CADHOST} --help RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cadhost --help exited with ${status}\n${err}")
endif()
string(REGEX MATCHALL "docs/[a-z]+\\.md" documents "${out}")
if(NOT documents)
  message(FATAL_ERROR "cadhost --help names no reference:\n${out}")
endif()
foreach(document ${documents})
  if(NOT EXISTS ${SOURCE}/${document})
    message(FATAL_ERROR "cadhost --help names ${document}, which the source tree does not have")
  endif()
endforeach()

# With no display to open a window on.
execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=DISPLAY --unset=WAYLAND_DISPLAY
                        ${CADHOST} --settings ${WORK}/settings ${SOURCE}/examples/tour.dxf
                RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 2 OR NOT err MATCHES "^cadhost: no script given")
  message(FATAL_ERROR "cadhost without a script exited with ${status}:\n${out}${err}")
endif()
if(NOT out STREQUAL "")
  message(FATAL_ERROR "cadhost without a script printed:\n${out}")
endif()
if(EXISTS ${WORK}/settings)
  message(FATAL_ERROR "cadhost without a script made the settings store before it refused")
endif()
