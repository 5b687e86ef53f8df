cmake_minimum_required(VERSION 3.25)
# The tour as tools/tour runs it: in a folder of its own, on the tour
# drawing. What it prints must match tour.out (the README shows it), and the
# drawing it saved with its field must read in ezdxf (when installed).
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
file(COPY ${SOURCE}/examples/tour_notes.txt DESTINATION ${WORK})
file(COPY ${SOURCE}/examples/tour_costs.xlsx DESTINATION ${WORK})
execute_process(COMMAND ${CADHOST} --settings ${WORK}/settings --script ${SOURCE}/examples/tour.qms
                        ${SOURCE}/examples/tour.dxf
                WORKING_DIRECTORY ${WORK} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the tour exited with ${status}\n${out}\n${err}")
endif()
file(READ ${EXPECTED} expected)
if(NOT out STREQUAL expected)
  file(WRITE ${WORK}/tour.stdout "${out}")
  execute_process(COMMAND diff -u ${EXPECTED} ${WORK}/tour.stdout OUTPUT_VARIABLE difference)
  message(FATAL_ERROR "the tour printed other lines:\n${difference}")
endif()
execute_process(COMMAND ${PYTHON} ${SOURCE}/tests/fixtures/check_with_ezdxf.py audit ${WORK}/tour_with_field.dxf
                RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(status EQUAL 77)
  message("ezdxf is not installed; the saved drawing was not read by another reader")
elseif(NOT status EQUAL 0)
  message(FATAL_ERROR "ezdxf does not read the drawing the tour saved:\n${out}\n${err}")
endif()
