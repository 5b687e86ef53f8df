cmake_minimum_required(VERSION 3.25)
# cadhost update on Objects Area fields: measure_update.qms puts two fields
# into the measurement fixture and saves it; then, as a user would edit the
# file, the room 36 is widened from 12 to 15 and the circle 3D is taken out.
# The update brings the first field to the new sum and reports the second,
# whose object is gone; what it prints must match measure_update.out (@WORK@
# for the work folder), and ezdxf must read the result (when installed).
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
execute_process(COMMAND ${CADHOST} --settings ${WORK}/settings --script ${SOURCE}/tests/cadhost/measure_update.qms
                        ${SOURCE}/tests/fixtures/measure_r2010.dxf
                WORKING_DIRECTORY ${WORK} RESULT_VARIABLE status OUTPUT_VARIABLE made ERROR_VARIABLE err)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the fields were not made (${status})\n${made}\n${err}")
endif()
file(READ ${WORK}/drawing.dxf text)

# The entity of a handle and type in a drawing's text: from its marker to
# the next marker.
function(entity_of text type handle out_before out_entity out_after)
  string(FIND "${text}" "  0\n${type}\n  5\n${handle}\n" start)
  if(start EQUAL -1)
    message(FATAL_ERROR "the ${type} ${handle} was not found in the drawing")
  endif()
  string(SUBSTRING "${text}" 0 ${start} before)
  math(EXPR body "${start} + 4")
  string(SUBSTRING "${text}" ${body} -1 rest)
  string(FIND "${rest}" "  0\n" length)
  math(EXPR length "${length} + 4")
  string(SUBSTRING "${text}" ${start} ${length} entity)
  math(EXPR end "${start} + ${length}")
  string(SUBSTRING "${text}" ${end} -1 after)
  set(${out_before} "${before}" PARENT_SCOPE)
  set(${out_entity} "${entity}" PARENT_SCOPE)
  set(${out_after} "${after}" PARENT_SCOPE)
endfunction()

# The room 36: its corners (12,0) and (12,10) move to x 15.
entity_of("${text}" LWPOLYLINE 36 before room after)
string(REPLACE " 10\n12.0\n 20\n0.0\n 10\n12.0\n 20\n10.0\n" " 10\n15.0\n 20\n0.0\n 10\n15.0\n 20\n10.0\n"
       widened "${room}")
if(widened STREQUAL room)
  message(FATAL_ERROR "the corners of the room 36 were not found")
endif()
set(text "${before}${widened}${after}")

# The circle 3D goes.
entity_of("${text}" CIRCLE 3D before circle after)
file(WRITE ${WORK}/drawing.dxf "${before}${after}")

execute_process(COMMAND ${CADHOST} update ${WORK}/drawing.dxf --settings ${WORK}/settings
                RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 1)
  message(FATAL_ERROR "cadhost update exited with ${status}, not 1 (a field fails)\n${out}\n${err}")
endif()
file(READ ${EXPECTED} expected)
string(REPLACE "@WORK@" "${WORK}" expected "${expected}")
if(NOT out STREQUAL expected)
  file(WRITE ${WORK}/update.stdout "${out}")
  message(FATAL_ERROR "cadhost update printed other lines:\n--- expected\n${expected}\n--- printed\n${out}")
endif()
# Each text shows its field's value: the new sum, and "####" for the field
# whose object is gone.
file(READ ${WORK}/drawing.dxf written)
foreach(pair "2A2;200.14" "2A7;####")
  list(GET pair 0 handle)
  list(GET pair 1 value)
  entity_of("${written}" MTEXT ${handle} before text after)
  string(FIND "${text}" "\n  1\n${value}\n" found)
  if(found EQUAL -1)
    message(FATAL_ERROR "the text ${handle} does not show ${value}:\n${text}")
  endif()
endforeach()
execute_process(COMMAND ${PYTHON} ${SOURCE}/tests/fixtures/check_with_ezdxf.py audit ${WORK}/drawing.dxf
                RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(status EQUAL 77)
  message("ezdxf is not installed; the file was not read by another reader")
elseif(NOT status EQUAL 0)
  message(FATAL_ERROR "ezdxf does not read the updated drawing:\n${out}\n${err}")
endif()
