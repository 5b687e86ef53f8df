# Resource scripts in .rc syntax travel inside their module: the build turns
# the script and the headers it includes into a source file that holds
# their text under the exported symbol cadhost_resource_script, which the
# host finds in the module's image and reads once.
#
#   qm_embed_resources(TARGET SCRIPT file.rc [INCLUDES header.h ...] [SYMBOL name])
#
# The host library's own script goes under another symbol (SYMBOL), so that
# no module's symbol of the same name clashes with it.
function(qm_embed_resources target)
  cmake_parse_arguments(EMBED "" "SCRIPT;SYMBOL" "INCLUDES" ${ARGN})
  if(NOT EMBED_SYMBOL)
    set(EMBED_SYMBOL cadhost_resource_script)
  endif()
  if(NOT EMBED_SCRIPT)
    message(FATAL_ERROR "qm_embed_resources(${target}) needs a SCRIPT")
  endif()
  qm_embed_into(${target} ${CMAKE_CURRENT_BINARY_DIR}/${target}_resources.cpp ${EMBED_SYMBOL} OFF
                "Embedding the resource script of ${target}" ${EMBED_SCRIPT} ${EMBED_INCLUDES})
endfunction()

# Data files that travel inside their module as they are (a template the
# library reads, not a resource script): the build turns them into a source
# file that holds their bytes under SYMBOL, a table of {name, text, size}
# that ends with a null name, visible only inside the module.
#
#   qm_embed_files(TARGET SYMBOL name FILES file ...)
function(qm_embed_files target)
  cmake_parse_arguments(EMBED "" "SYMBOL" "FILES" ${ARGN})
  if(NOT EMBED_SYMBOL OR NOT EMBED_FILES)
    message(FATAL_ERROR "qm_embed_files(${target}) needs a SYMBOL and FILES")
  endif()
  qm_embed_into(${target} ${CMAKE_CURRENT_BINARY_DIR}/${target}_${EMBED_SYMBOL}.cpp ${EMBED_SYMBOL} ON
                "Embedding the data files of ${target}" ${EMBED_FILES})
endfunction()

# The one way files are turned into a source file of the module: OUTPUT
# holds the files' text under SYMBOL, hidden in the module when HIDDEN.
function(qm_embed_into target output symbol hidden comment)
  set(absolute)
  foreach(file ${ARGN})
    get_filename_component(path ${file} ABSOLUTE)
    list(APPEND absolute ${path})
  endforeach()
  string(REPLACE ";" "|" joined "${absolute}")
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DFILES=${joined} -DOUTPUT=${output} -DSYMBOL=${symbol} -DHIDDEN=${hidden}
            -P ${PROJECT_SOURCE_DIR}/cmake/EmbedResourceScript.cmake
    DEPENDS ${absolute} ${PROJECT_SOURCE_DIR}/cmake/EmbedResourceScript.cmake
    COMMENT "${comment}"
    VERBATIM)
  target_sources(${target} PRIVATE ${output})
endfunction()
