cmake_policy(VERSION 3.25)
# Copies the delivered files from FROM into TO; an existing database and document template are left alone: they
# may be the user's.
set(kept Shotly.mdb Shotly.dot)
file(GLOB delivered LIST_DIRECTORIES true ${FROM}/*)
foreach(item IN LISTS delivered)
    get_filename_component(name ${item} NAME)
    if(NOT name IN_LIST kept OR NOT EXISTS ${TO}/${name})
        file(COPY ${item} DESTINATION ${TO})
    endif()
endforeach()
