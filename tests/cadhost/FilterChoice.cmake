cmake_minimum_required(VERSION 3.25)
# The type choice of the Objects Filter dialog outlives cadhost: two runs
# over one settings folder on the measurement fixture, the first unticking
# Circle, the second finding it unticked. What each prints must match
# filter_choice_set.out and filter_choice_kept.out.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
foreach(run filter_choice_set filter_choice_kept)
  execute_process(COMMAND ${CADHOST} --settings ${WORK}/settings --script ${SOURCE}/tests/cadhost/${run}.qms
                          ${SOURCE}/tests/fixtures/measure_r2010.dxf
                  WORKING_DIRECTORY ${WORK} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${run} exited with ${status}\n${out}\n${err}")
  endif()
  file(READ ${SOURCE}/tests/cadhost/${run}.out expected)
  if(NOT out STREQUAL expected)
    file(WRITE ${WORK}/${run}.stdout "${out}")
    execute_process(COMMAND diff -u ${SOURCE}/tests/cadhost/${run}.out ${WORK}/${run}.stdout OUTPUT_VARIABLE difference)
    message(FATAL_ERROR "${run} printed other lines:\n${difference}")
  endif()
endforeach()
