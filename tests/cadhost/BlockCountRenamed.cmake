cmake_minimum_required(VERSION 3.25)
# A Block Count field whose block the drawing no longer holds: a field
# counting DOOR is made in the blocks fixture and saved; the block is then
# renamed PORTAL in the file by hand. Editing the field brings DOOR back
# into the page's list, ticked, beside PORTAL; the field keeps its last
# value until it is evaluated again, when it counts 0. What the edit session prints must match
# blockcount_renamed.out.
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
# The block's name stands in group 2 of its record, its BLOCK and each INSERT.
file(READ ${WORK}/drawing.dxf drawing)
string(REPLACE "\n  2\nDOOR\n" "\n  2\nPORTAL\n" renamed "${drawing}")
if(renamed STREQUAL drawing)
  message(FATAL_ERROR "the block DOOR was not found in the saved drawing")
endif()
file(WRITE ${WORK}/drawing.dxf "${renamed}")
file(WRITE ${WORK}/edit.qms "open ${WORK}/drawing.dxf
print field ${text}
field edit ${text}
print control 207
print code
tick 207 \"DOOR\" off
tick 207 \"DOOR\" on
print control 104
cancel
")
execute_process(COMMAND ${CADHOST} --settings ${WORK}/settings --script ${WORK}/edit.qms
                RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the edit session failed (${status}):\n${out}\n${err}")
endif()
file(READ ${EXPECTED} expected)
string(REPLACE "@TEXT@" "${text}" expected "${expected}")
if(NOT out STREQUAL expected)
  file(WRITE ${WORK}/edit.stdout "${out}")
  message(FATAL_ERROR "the edit session printed other lines:\n--- expected\n${expected}\n--- printed\n${out}")
endif()
