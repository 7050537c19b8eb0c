# Draws all pictures into DRAWN with PROGRAM and compares them with those in COMMITTED.
file(REMOVE_RECURSE "${DRAWN}")
execute_process(COMMAND "${PROGRAM}" "${DRAWN}" COMMAND_ERROR_IS_FATAL ANY)

# Icons are left out: how a PNG is packed is the library's choice, not ours.
file(GLOB committed RELATIVE "${COMMITTED}" "${COMMITTED}/*.bmp" "${COMMITTED}/*.svg")
file(GLOB drawn RELATIVE "${DRAWN}" "${DRAWN}/*.bmp" "${DRAWN}/*.svg")
if(NOT committed STREQUAL drawn)
    message(FATAL_ERROR "Committed are ${committed}, but drawn were ${drawn}")
endif()
foreach(name IN LISTS drawn)
    file(SHA256 "${COMMITTED}/${name}" committedHash)
    file(SHA256 "${DRAWN}/${name}" drawnHash)
    if(NOT committedHash STREQUAL drawnHash)
        message(SEND_ERROR "${name} in data/ isn't what the program draws: build the target artwork and commit")
    endif()
endforeach()
