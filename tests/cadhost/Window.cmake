# The window of cadhost, under a virtual display: the tour drawing drawn to
# a picture of the asked size, with what it drew counted; options that do
# not go together refused before a window opens.
file(REMOVE_RECURSE ${WORK})
# Under the sanitizers: the desktop libraries' own leftovers are not cadhost's.
set(ENV{LSAN_OPTIONS} "suppressions=${SOURCE}/tests/cadhost/window.lsan.supp:print_suppressions=0")
file(MAKE_DIRECTORY ${WORK})

execute_process(COMMAND ${XVFB_RUN} -a -s "-screen 0 1280x1024x24"
                        ${CADHOST} --settings ${WORK}/settings --snapshot ${WORK}/tour.png --size 640x480
                        ${SOURCE}/examples/tour.dxf
                TIMEOUT 120 RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cadhost --snapshot exited with ${status}:\n${out}${err}")
endif()
if(NOT err MATCHES "drew ([0-9]+) outlines, ([0-9]+) texts, ([0-9]+) block references")
  message(FATAL_ERROR "cadhost --snapshot did not say what it drew:\n${err}")
endif()
if(CMAKE_MATCH_1 LESS 10 OR CMAKE_MATCH_2 LESS 5)
  message(FATAL_ERROR "cadhost --snapshot drew too little of the tour drawing:\n${err}")
endif()
# The PNG's header: its signature, then the width and height of IHDR.
file(READ ${WORK}/tour.png header LIMIT 24 HEX)
string(SUBSTRING "${header}" 0 16 signature)
string(SUBSTRING "${header}" 32 8 width)
string(SUBSTRING "${header}" 40 8 height)
if(NOT signature STREQUAL "89504e470d0a1a0a" OR NOT width STREQUAL "00000280" OR NOT height STREQUAL "000001e0")
  message(FATAL_ERROR "cadhost --snapshot wrote no 640x480 PNG: ${header}")
endif()

# A drawing that cannot be read: a message, no window, no picture.
file(WRITE ${WORK}/broken.dxf "0\nSECTION\n2\nENTITIES\n0\nLINE\n10\nnot a number\n")
execute_process(COMMAND ${XVFB_RUN} -a ${CADHOST} --settings ${WORK}/settings --snapshot ${WORK}/broken.png
                        ${WORK}/broken.dxf
                TIMEOUT 120 RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 2 OR NOT err MATCHES "broken.dxf" OR EXISTS ${WORK}/broken.png)
  message(FATAL_ERROR "cadhost --snapshot of a broken drawing exited with ${status}:\n${out}${err}")
endif()

# A picture that cannot be written: said on standard error, not in a box
# that waits for a click.
execute_process(COMMAND ${XVFB_RUN} -a ${CADHOST} --settings ${WORK}/settings --snapshot ${WORK}/no/such/folder.png
                        ${SOURCE}/examples/tour.dxf
                TIMEOUT 120 RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT status EQUAL 1 OR NOT err MATCHES "cannot write .*folder.png")
  message(FATAL_ERROR "cadhost --snapshot to a missing folder exited with ${status}:\n${out}${err}")
endif()

foreach(bad "--size;0x480" "--size;640" "--gui;--script;${WORK}/none.qms")
  execute_process(COMMAND ${CADHOST} ${bad} ${SOURCE}/examples/tour.dxf
                  TIMEOUT 120 RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 2 OR NOT err MATCHES "^cadhost: ")
    message(FATAL_ERROR "cadhost ${bad} exited with ${status}:\n${out}${err}")
  endif()
endforeach()
