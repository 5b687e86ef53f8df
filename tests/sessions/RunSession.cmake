cmake_minimum_required(VERSION 3.25)
# Runs one session script in cadhost. @BIN@ in the script and in its
# expected transcript stands for the folder of the host's modules. The
# first line may say "# expect exit N" and "# cadhost ARGS..." is read too.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
get_filename_component(name ${SCRIPT} NAME_WE)
get_filename_component(folder ${SCRIPT} DIRECTORY)

file(READ ${SCRIPT} text)
string(REPLACE "@BIN@" "${BIN}" text "${text}")
string(REPLACE "@WORK@" "${WORK}" text "${text}")
string(REPLACE "@SOURCE@" "${folder}" text "${text}")
file(WRITE ${WORK}/${name}.qms "${text}")
# A folder NAME.files beside the script holds files the session works on:
# they are copied into the work folder, where the session starts.
if(IS_DIRECTORY ${folder}/${name}.files)
  file(COPY ${folder}/${name}.files/ DESTINATION ${WORK})
endif()

set(exit 0)
if(text MATCHES "# expect exit ([0-9]+)")
  set(exit ${CMAKE_MATCH_1})
endif()
set(args)
if(text MATCHES "# cadhost ([^\n]*)")
  separate_arguments(args UNIX_COMMAND "${CMAKE_MATCH_1}")
endif()

execute_process(
  COMMAND ${CADHOST} --settings ${WORK}/settings ${args} --script ${WORK}/${name}.qms
  WORKING_DIRECTORY ${WORK}
  OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE status TIMEOUT 120)
file(WRITE ${WORK}/${name}.stdout "${out}")

if(NOT status EQUAL exit)
  message(FATAL_ERROR "cadhost exited with ${status}, not ${exit}\n--- output\n${out}\n--- errors\n${err}")
endif()
if(EXISTS ${folder}/${name}.out)
  file(READ ${folder}/${name}.out expected)
  string(REPLACE "@BIN@" "${BIN}" expected "${expected}")
  string(REPLACE "@WORK@" "${WORK}" expected "${expected}")
  if(NOT out STREQUAL expected)
    execute_process(COMMAND diff -u ${folder}/${name}.out ${WORK}/${name}.stdout OUTPUT_VARIABLE difference)
    message(FATAL_ERROR "the output differs from ${name}.out (@BIN@ is ${BIN}):\n${difference}")
  endif()
endif()
