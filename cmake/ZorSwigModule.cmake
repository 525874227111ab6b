# zor_add_swig_module(<name> [LINKS <libraries>...] [INTERFACE <file>] [DESTINATION <folder>])
#
# Declares the extension module _<name> and its shadow module <name>.py, generated from
# swig/configuration/zorPython/<name>.i. Both land in ZOR_PYTHON_DIR, so that one sys.path entry reaches the
# whole family; the extension finds the toolkit's libraries relative to its own place.
# Modules that only tests or benchmarks use name their own interface file and a folder of their own.
#
# Steps: swig (with a dependency file, so that a changed header regenerates only the modules that read it),
# ZOR_WRAPPER_STEPS one after the other over the generated wrapper (each says what it is for), tidy_docstrings and
# forward_shadow over the shadow module, compilation. zor_add_stubs() then makes the type stubs of all modules.

find_program(ZOR_SWIG NAMES swig4.0 swig REQUIRED)
execute_process(COMMAND ${ZOR_SWIG} -version OUTPUT_VARIABLE zor_swig_version)
if(NOT zor_swig_version MATCHES "SWIG Version 4\\.3\\.")
  message(FATAL_ERROR "SWIG 4.3 is needed: ${ZOR_SWIG} is another version, "
    "and modules of different versions do not share their type registry.\n${zor_swig_version}")
endif()

set(ZOR_SWIG_DIR ${PROJECT_SOURCE_DIR}/swig/configuration/zorPython)
set(ZOR_SWIG_INCLUDE_DIRS ${ZOR_SWIG_DIR} ${PROJECT_SOURCE_DIR}/binding ${PROJECT_SOURCE_DIR}/binding/classes
  ${PROJECT_SOURCE_DIR}/toolkit/core/include ${PROJECT_SOURCE_DIR}/toolkit/physics/include
  ${PROJECT_SOURCE_DIR}/toolkit/model/include ${PROJECT_SOURCE_DIR}/toolkit/terrain/include
  ${PROJECT_SOURCE_DIR}/toolkit/sensor/include
  ${PROJECT_SOURCE_DIR}/toolkit/python/include ${PROJECT_SOURCE_DIR}/toolkit/osg/include)

set(ZOR_WRAPPER_STEPS name_swig_types order_static_variables guard_swig_runtime shorten_calls)

add_custom_target(zor_modules)

function(zor_add_swig_module name)
  cmake_parse_arguments(ARG "" "INTERFACE;DESTINATION" "LINKS" ${ARGN})
  set(interface ${ZOR_SWIG_DIR}/${name}.i)
  if(ARG_INTERFACE)
    set(interface ${ARG_INTERFACE})
  endif()
  set(destination ${ZOR_PYTHON_DIR})
  if(ARG_DESTINATION)
    set(destination ${ARG_DESTINATION})
  endif()
  set(work ${CMAKE_BINARY_DIR}/swig/${name})
  set(raw ${work}/${name}_raw.cxx)
  set(wrapper ${work}/${name}_wrap.cxx)
  file(MAKE_DIRECTORY ${work} ${destination})
  list(TRANSFORM ZOR_SWIG_INCLUDE_DIRS PREPEND -I OUTPUT_VARIABLE includes)

  add_custom_command(
    OUTPUT ${raw} ${work}/${name}.py
    COMMAND ${ZOR_SWIG} -c++ -python -doxygen -DSWIGWORDSIZE64 -Werror ${includes}
      -MMD -MF ${work}/${name}.d -o ${raw} -oh ${work}/${name}_wrap.h -outdir ${work} ${interface}
    MAIN_DEPENDENCY ${interface}
    DEPFILE ${work}/${name}.d
    COMMENT "SWIG ${name}"
    VERBATIM)
  set(steps)
  set(scripts ${PROJECT_SOURCE_DIR}/toolchain/wrapperstep.py)
  set(input ${raw})
  foreach(step IN LISTS ZOR_WRAPPER_STEPS)
    set(script ${PROJECT_SOURCE_DIR}/toolchain/${step}.py)
    set(output ${work}/${name}_${step}.cxx)
    list(APPEND steps COMMAND Python3::Interpreter ${script} ${input} ${output})
    list(APPEND scripts ${script})
    set(input ${output})
  endforeach()
  add_custom_command(
    OUTPUT ${wrapper}
    ${steps}
    COMMAND ${CMAKE_COMMAND} -E rename ${input} ${wrapper}
    DEPENDS ${raw} ${scripts}
    COMMENT "Steps over the wrapper of ${name}"
    VERBATIM)

  set(described)
  if(NOT ARG_DESTINATION)
    # The shadow module once more, with SWIG's own description of every function in place of the headers' comments:
    # it tells docstrings and stubs how the parameters of overloads are called.
    set(described ${work}/signatures/${name}.py)
    file(MAKE_DIRECTORY ${work}/signatures)
    add_custom_command(
      OUTPUT ${described}
      COMMAND ${ZOR_SWIG} -c++ -python -DSWIGWORDSIZE64 -features autodoc=1 ${includes}
        -o ${work}/signatures/unused.cxx -oh ${work}/signatures/unused.h -outdir ${work}/signatures ${interface}
      COMMAND ${CMAKE_COMMAND} -E rm -f ${work}/signatures/unused.cxx ${work}/signatures/unused.h
      DEPENDS ${raw}
      COMMENT "Signatures of ${name}"
      VERBATIM)
    set_property(GLOBAL APPEND PROPERTY zor_stubbed_modules ${name})
    set_property(GLOBAL APPEND PROPERTY zor_stub_inputs ${raw} ${work}/${name}.py ${described})
  endif()

  set(tidy ${PROJECT_SOURCE_DIR}/toolchain/tidy_docstrings.py)
  set(forward ${PROJECT_SOURCE_DIR}/toolchain/forward_shadow.py)
  add_custom_command(
    OUTPUT ${destination}/${name}.py
    COMMAND Python3::Interpreter ${tidy} ${work}/${name}.py ${work}/${name}_tidy.py ${described}
    COMMAND Python3::Interpreter ${forward} ${work}/${name}_tidy.py ${destination}/${name}.py
    COMMAND Python3::Interpreter -m py_compile ${destination}/${name}.py # whoever imports it needn't be able to write
    DEPENDS ${work}/${name}.py ${described} ${tidy} ${forward} ${PROJECT_SOURCE_DIR}/toolchain/wrapperstep.py
      ${PROJECT_SOURCE_DIR}/toolchain/stubs/docstrings.py ${PROJECT_SOURCE_DIR}/toolchain/stubs/shadow.py
    COMMENT "Steps over the shadow of ${name}"
    VERBATIM)

  set(target py_${name})
  add_library(${target} MODULE ${wrapper} ${destination}/${name}.py)
  target_include_directories(${target} PRIVATE ${work} ${PROJECT_SOURCE_DIR}/swig)
  target_compile_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:-O2> -g0 -fno-strict-aliasing)
  target_link_libraries(${target} PRIVATE zor_generated_flags zorBinding Python3::Module ${ARG_LINKS})
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME _${name} PREFIX "" SUFFIX ".so"
    LIBRARY_OUTPUT_DIRECTORY ${destination}
    CXX_VISIBILITY_PRESET hidden
    JOB_POOL_COMPILE zor_wrappers
    BUILD_RPATH "$ORIGIN/../lib" INSTALL_RPATH "$ORIGIN/../lib")
  add_dependencies(zor_modules ${target})
endfunction()

# zor_add_stubs()
#
# Makes the type stubs of all modules declared so far, beside them; classes of one appear in those of others.
function(zor_add_stubs)
  get_property(modules GLOBAL PROPERTY zor_stubbed_modules)
  get_property(inputs GLOBAL PROPERTY zor_stub_inputs)
  list(TRANSFORM modules PREPEND ${ZOR_PYTHON_DIR}/ OUTPUT_VARIABLE stubs)
  list(TRANSFORM stubs APPEND .pyi)
  file(GLOB scripts CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/toolchain/make_stubs.py ${PROJECT_SOURCE_DIR}/toolchain/stubs/*.py)
  add_custom_command(
    OUTPUT ${stubs}
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/toolchain/make_stubs.py
      ${CMAKE_BINARY_DIR}/swig ${ZOR_PYTHON_DIR} ${modules}
    DEPENDS ${inputs} ${scripts}
    COMMENT "Type stubs"
    VERBATIM)
  add_custom_target(zor_stubs ALL DEPENDS ${stubs})
  add_dependencies(zor_modules zor_stubs)
endfunction()
