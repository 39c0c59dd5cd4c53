# Copies the delivered files from FROM into TO; an existing database is left alone.
file(GLOB delivered LIST_DIRECTORIES true ${FROM}/*)
foreach(item IN LISTS delivered)
    get_filename_component(name ${item} NAME)
    if(NOT name STREQUAL "Shotly.mdb" OR NOT EXISTS ${TO}/Shotly.mdb)
        file(COPY ${item} DESTINATION ${TO})
    endif()
endforeach()
