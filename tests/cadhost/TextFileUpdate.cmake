cmake_minimum_required(VERSION 3.25)
# A Text File field as a user lives with it: made on the page with a path
# relative to the drawing, then brought up to date by `cadhost update` after
# the notes changed, after the drawing moved with its notes to another
# folder, and once the notes are gone. Everything cadhost prints is
# collected and must match textfile_update.out (@WORK@ for the work folder).
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/site)
set(transcript "")

# Runs cadhost with the arguments; its output joins the transcript under a
# heading, and its exit status must be the one given.
function(run heading expected_status)
  execute_process(COMMAND ${CADHOST} ${ARGN} WORKING_DIRECTORY ${WORK}
                  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL expected_status)
    message(FATAL_ERROR "${heading}: cadhost exited with ${status}, not ${expected_status}\n${out}\n${err}")
  endif()
  set(transcript "${transcript}== ${heading}\n${out}" PARENT_SCOPE)
endfunction()

# What a session sees of the field in a drawing.
function(look heading drawing)
  file(WRITE ${WORK}/look.qms "open ${drawing}\nprint field 30\n")
  run("${heading}" 0 --settings ${WORK}/settings --script ${WORK}/look.qms)
  set(transcript "${transcript}" PARENT_SCOPE)
endfunction()

file(WRITE ${WORK}/site/notes.txt "First note\n")
file(WRITE ${WORK}/make.qms
  "save ${WORK}/site/site.dxf\n"
  "file ${WORK}/site/notes.txt\n"
  "field at 0,0\n"
  "type \"QM Text File\"\n"
  "click 201\n"
  "choose 206 \"Relative Path\"\n"
  "ok\n"
  "save ${WORK}/site/site.dxf\n")
run("a field made on the page" 0 --settings ${WORK}/settings --script ${WORK}/make.qms)
look("as saved" ${WORK}/site/site.dxf)

file(WRITE ${WORK}/site/notes.txt "Second note\r\nwith two lines\r\n")
run("update after the notes changed" 0 update ${WORK}/site/site.dxf --settings ${WORK}/settings)
look("the new notes" ${WORK}/site/site.dxf)

file(RENAME ${WORK}/site ${WORK}/moved)
run("update in another folder" 0 update ${WORK}/moved/site.dxf --settings ${WORK}/settings)
look("the moved drawing" ${WORK}/moved/site.dxf)

file(REMOVE ${WORK}/moved/notes.txt)
run("update without the notes" 1 update ${WORK}/moved/site.dxf --settings ${WORK}/settings)
look("the notes gone" ${WORK}/moved/site.dxf)

file(READ ${EXPECTED} expected)
string(REPLACE "@WORK@" "${WORK}" expected "${expected}")
string(REPLACE "@BIN@" "${BIN}" expected "${expected}")
if(NOT transcript STREQUAL expected)
  file(WRITE ${WORK}/textfile_update.stdout "${transcript}")
  execute_process(COMMAND diff -u ${EXPECTED} ${WORK}/textfile_update.stdout OUTPUT_VARIABLE difference)
  message(FATAL_ERROR "cadhost printed other lines (@WORK@ is ${WORK}):\n${difference}")
endif()
