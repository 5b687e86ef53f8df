cmake_minimum_required(VERSION 3.25)
# cadhost update keeps a Block Count field up to date: a field counting
# DOOR is made in the blocks fixture and saved; two doors are then added to
# the file's model space by hand, and `cadhost update` brings the count from
# 14 to 16. What update prints must match update_blockcount.out (@WORK@ for
# the work folder).
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
file(WRITE ${WORK}/make.qms "open ${FIXTURES}/blocks_r2010.dxf
field at 60,60
type \"QM Block Count\"
tick 207 \"DOOR\" on
ok
save ${WORK}/drawing.dxf
")
execute_process(COMMAND ${CADHOST} --settings ${WORK}/settings --script ${WORK}/make.qms
                RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the session that makes the field failed (${status}):\n${out}\n${err}")
endif()
string(REGEX MATCH "Multiline text ([0-9A-F]+) shows the field" shown "${out}")
set(text ${CMAKE_MATCH_1})

# Two doors at the end of the file's entities, with handles from the next free one on.
file(READ ${WORK}/drawing.dxf drawing)
string(REGEX MATCH "\\$HANDSEED\n  5\n([0-9A-F]+)\n" next_handle "${drawing}")
if(NOT next_handle)
  message(FATAL_ERROR "the saved drawing names no next free handle")
endif()
set(next ${CMAKE_MATCH_1})
math(EXPR first "0x${next}" OUTPUT_FORMAT HEXADECIMAL)
math(EXPR second "0x${next} + 1" OUTPUT_FORMAT HEXADECIMAL)
math(EXPR after "0x${next} + 2" OUTPUT_FORMAT HEXADECIMAL)
foreach(name first second after)
  string(REGEX REPLACE "^0x0*" "" ${name} "${${name}}")
  string(TOUPPER "${${name}}" ${name})
endforeach()
set(doors "  0\nINSERT\n  5\n${first}\n330\n17\n100\nAcDbEntity\n  8\n0\n100\nAcDbBlockReference\n  2\nDOOR\n 10\n100.0\n 20\n100.0\n 30\n0.0\n")
string(APPEND doors "  0\nINSERT\n  5\n${second}\n330\n17\n100\nAcDbEntity\n  8\n0\n100\nAcDbBlockReference\n  2\nDOOR\n 10\n102.0\n 20\n100.0\n 30\n0.0\n")
string(FIND "${drawing}" "\nENTITIES\n" entities)
string(SUBSTRING "${drawing}" ${entities} -1 tail)
string(FIND "${tail}" "  0\nENDSEC\n" end)
math(EXPR end "${entities} + ${end}")
string(SUBSTRING "${drawing}" 0 ${end} head)
string(SUBSTRING "${drawing}" ${end} -1 rest)
set(edited "${head}${doors}${rest}")
string(REPLACE "$HANDSEED\n  5\n${next}\n" "$HANDSEED\n  5\n${after}\n" edited "${edited}")
file(WRITE ${WORK}/drawing.dxf "${edited}")

execute_process(COMMAND ${CADHOST} update ${WORK}/drawing.dxf --settings ${WORK}/settings
                RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cadhost update exited with ${status}\n${out}\n${err}")
endif()
file(READ ${EXPECTED} expected)
string(REPLACE "@WORK@" "${WORK}" expected "${expected}")
if(NOT out STREQUAL expected)
  message(FATAL_ERROR "cadhost update printed other lines:\n--- expected\n${expected}\n--- printed\n${out}")
endif()
file(WRITE ${WORK}/check.qms "open ${WORK}/drawing.dxf\nexpect value ${text} \"16\"\nprint field ${text}\n")
execute_process(COMMAND ${CADHOST} --settings ${WORK}/settings --script ${WORK}/check.qms
                RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the updated field does not show 16 (${status}):\n${out}\n${err}")
endif()
