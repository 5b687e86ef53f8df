cmake_minimum_required(VERSION 3.25)
# Drawings whose fields the host cannot follow, as a user meets them: the
# text 32 of tablecell_notables.dxf holds the field 35, whose child is the
# field 36. Edited so that 35's child is 35 itself, or a handle that names
# nothing, cadhost update lists the field as not evaluated with the reason,
# exits with 1 and writes the drawing back as it came; a session that
# prints and edits the field of the cycle runs to its end.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
file(READ ${FIXTURES}/tablecell_notables.dxf fixture)
set(child "%<\\_FldIdx 0>%\n 90\n1\n360\n36\n")

set(names cycle nothing)
set(cycle_child "35")
set(cycle_reason "The child fields form a cycle: 35 -> 35.")
set(nothing_child "FFFFF")
set(nothing_reason "The child field FFFFF is not in the drawing.")

foreach(name ${names})
  string(REPLACE "${child}" "%<\\_FldIdx 0>%\n 90\n1\n360\n${${name}_child}\n" edited "${fixture}")
  if(edited STREQUAL fixture)
    message(FATAL_ERROR "the child of the field 35 was not found in the fixture")
  endif()
  set(drawing ${WORK}/${name}.dxf)
  file(WRITE ${drawing} "${edited}")

  execute_process(COMMAND ${CADHOST} update ${drawing} --settings ${WORK}/settings
                  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  set(expected "Updated ${drawing}: 0 fields evaluated, 0 changed, 0 failed, 1 not evaluated.\n"
               "  not evaluated: text 32 %<\\_FldIdx 0>%: ${${name}_reason}\n")
  string(JOIN "" expected ${expected})
  if(NOT status EQUAL 1 OR NOT out STREQUAL expected)
    message(FATAL_ERROR "cadhost update of the ${name} drawing exited with ${status} and printed:\n${out}${err}")
  endif()
  file(READ ${drawing} written)
  if(NOT written STREQUAL edited)
    message(FATAL_ERROR "cadhost update changed the ${name} drawing")
  endif()

  # Looking at the field of the cycle and editing it: the field keeps its
  # code, and the text what it showed.
  if(NOT name STREQUAL cycle)
    continue()
  endif()
  file(WRITE ${WORK}/${name}.qms
       "print field 32\nfield edit 32\nexpect code \"%<\\\\_FldIdx 0>%\"\ncancel\nexpect value 32 \"Pump\"\n")
  execute_process(COMMAND ${CADHOST} --settings ${WORK}/settings --script ${WORK}/${name}.qms ${drawing}
                  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0 OR NOT out MATCHES "field of 32:\n  text \"Pump\"\n  code \"%<\\\\\\\\_FldIdx 0>%\"")
    message(FATAL_ERROR "the session on the ${name} drawing exited with ${status}:\n${out}${err}")
  endif()
endforeach()
