cmake_minimum_required(VERSION 3.25)
# ExcelCell fields as a user lives with them: the stored fields of
# excel_stored.files brought up to date by `cadhost update` (the workbooks
# beside the drawing, named relative to it), then again after the user
# changed a cell of the workbook, and once the workbook is gone. Everything
# cadhost prints is collected and must match excel_update.out (@WORK@ for
# the work folder).
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
file(COPY ${SESSIONS}/excel_stored.files/ DESTINATION ${WORK}/site)
set(transcript "")

function(run heading expected_status)
  execute_process(COMMAND ${CADHOST} ${ARGN} WORKING_DIRECTORY ${WORK}
                  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL expected_status)
    message(FATAL_ERROR "${heading}: cadhost exited with ${status}, not ${expected_status}\n${out}\n${err}")
  endif()
  set(transcript "${transcript}== ${heading}\n${out}" PARENT_SCOPE)
endfunction()

# What a session sees of two of the fields.
function(look heading)
  file(WRITE ${WORK}/look.qms "open ${WORK}/site/plan.dxf\nprint field 32\nexpect value 37 \"Tuesday, March 5, 2024\"\n")
  run("${heading}" 0 --settings ${WORK}/settings --script ${WORK}/look.qms)
  set(transcript "${transcript}" PARENT_SCOPE)
endfunction()

run("update of the stored fields" 1 update ${WORK}/site/plan.dxf --settings ${WORK}/settings)
look("as updated")

file(COPY_FILE ${WORKBOOKS}/changed/cells.xlsx ${WORK}/site/cells.xlsx)
run("update after the workbook changed" 1 update ${WORK}/site/plan.dxf --settings ${WORK}/settings)
look("the changed cell")

file(REMOVE ${WORK}/site/cells.xlsx)
run("update without the workbook" 1 update ${WORK}/site/plan.dxf --settings ${WORK}/settings)

file(READ ${EXPECTED} expected)
string(REPLACE "@WORK@" "${WORK}" expected "${expected}")
if(NOT transcript STREQUAL expected)
  file(WRITE ${WORK}/excel_update.stdout "${transcript}")
  execute_process(COMMAND diff -u ${EXPECTED} ${WORK}/excel_update.stdout OUTPUT_VARIABLE difference)
  message(FATAL_ERROR "cadhost printed other lines (@WORK@ is ${WORK}):\n${difference}")
endif()
