# cmake -D BUILD_DIR=... -D WORK_DIR=... -D EXPECTED=... [-D DESKTOP_FILE_VALIDATE=...] [-D GROFF=...]
#       -P CheckInstall.cmake
set(prefix ${WORK_DIR}/prefix)
set(failures)
macro(fail text)
    list(APPEND failures "${text}")
endmacro()

file(REMOVE_RECURSE ${WORK_DIR})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix}
    RESULT_VARIABLE rc OUTPUT_QUIET ERROR_VARIABLE err)
if(rc)
    message(FATAL_ERROR "cmake --install failed (${rc}): ${err}")
endif()

# Exactly the expected files, and nothing else.
file(GLOB_RECURSE installed LIST_DIRECTORIES false RELATIVE ${prefix} ${prefix}/*)
list(SORT installed)
file(STRINGS ${EXPECTED} expected)
list(SORT expected)
if(NOT installed STREQUAL expected)
    string(REPLACE ";" "\n  " a "${installed}")
    string(REPLACE ";" "\n  " b "${expected}")
    fail("installed:\n  ${a}\nexpected:\n  ${b}")
endif()

# The programs run from the install, with no display and nothing of the user's.
set(env ${CMAKE_COMMAND} -E env --unset=DISPLAY --unset=WAYLAND_DISPLAY --unset=QT_QPA_PLATFORM
    XDG_CONFIG_HOME=${WORK_DIR}/config XDG_DATA_HOME=${WORK_DIR}/data)
function(run_installed expected_rc expected_out)
    execute_process(COMMAND ${env} ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
    string(FIND "${out}" "${expected_out}" at)
    if(NOT rc STREQUAL expected_rc OR at EQUAL -1)
        set(failures ${failures} "${ARGN}: exit ${rc}, wanted ${expected_rc}; output lacks \"${expected_out}\":\n${out}${err}"
            PARENT_SCOPE)
    endif()
endfunction()
run_installed(0 "fpubench 1.0.13\n" ${prefix}/bin/fpubench --version)
run_installed(0 "Usage: fpubench [options]\n" ${prefix}/bin/fpubench --help)
run_installed(2 "" ${prefix}/bin/fpubench --device tessorim)
run_installed(0 "fpubench-run 1.0.13\n" ${prefix}/bin/fpubench-run --version)
run_installed(0 "EndFiscalReceipt(, 0)     -> OposSuccess(0)\n"
    ${prefix}/bin/fpubench-run --open --stop-on-error ${prefix}/share/fpubench/receipt.oposcmd)

# Each icon is as large as the folder it stands in says.
file(GLOB icons RELATIVE ${prefix}/share/icons/hicolor ${prefix}/share/icons/hicolor/*/apps/fpubench.png)
foreach(icon ${icons})
    string(REGEX MATCH "^([0-9]+)x([0-9]+)/" size "${icon}")
    file(READ ${prefix}/share/icons/hicolor/${icon} header HEX LIMIT 24)
    string(SUBSTRING "${header}" 32 8 w)
    string(SUBSTRING "${header}" 40 8 h)
    math(EXPR w "0x${w}")
    math(EXPR h "0x${h}")
    if(NOT header MATCHES "^89504e47" OR NOT "${w}x${h}" STREQUAL "${CMAKE_MATCH_1}x${CMAKE_MATCH_2}")
        fail("${icon} is ${w}x${h}")
    endif()
endforeach()

# The menu entry starts an installed program and names the installed icon.
set(desktop ${prefix}/share/applications/fpubench.desktop)
file(STRINGS ${desktop} lines)
foreach(key Exec Icon Categories)
    set(${key})
    foreach(line ${lines})
        if(line MATCHES "^${key}=(.*)$")
            set(${key} "${CMAKE_MATCH_1}")
        endif()
    endforeach()
endforeach()
string(REGEX REPLACE " .*" "" program "${Exec}")
if(NOT EXISTS ${prefix}/bin/${program})
    fail("Exec=${Exec} is not an installed program")
endif()
if(NOT EXISTS ${prefix}/share/icons/hicolor/48x48/apps/${Icon}.png)
    fail("Icon=${Icon} is not an installed icon")
endif()
if(NOT Categories MATCHES "^Development;Qt;")
    fail("Categories=${Categories}")
endif()
if(DESKTOP_FILE_VALIDATE)
    execute_process(COMMAND ${DESKTOP_FILE_VALIDATE} ${desktop} RESULT_VARIABLE rc OUTPUT_VARIABLE out
        ERROR_VARIABLE err)
    if(rc OR NOT "${out}${err}" STREQUAL "")
        fail("desktop-file-validate: ${out}${err}")
    endif()
endif()

# The man pages read without a warning.
if(GROFF)
    foreach(page fpubench fpubench-run)
        execute_process(COMMAND gzip -dc ${prefix}/share/man/man1/${page}.1.gz
            COMMAND ${GROFF} -man -Tutf8 -ww -z RESULT_VARIABLE rc ERROR_VARIABLE err)
        if(rc OR NOT err STREQUAL "")
            fail("${page}.1: ${err}")
        endif()
    endforeach()
endif()

if(failures)
    string(REPLACE ";" "\n" text "${failures}")
    message(FATAL_ERROR "${text}")
endif()
message(STATUS "installed and checked in ${prefix}")
