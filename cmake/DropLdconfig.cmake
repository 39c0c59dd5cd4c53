# CPack takes the module of the web engine for a library that the linker must get to know, and has the package say
# so in scripts. Nothing but the program opens the module: the scripts are taken out again.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    set(tree ${CPACK_TEMPORARY_DIRECTORY}/repacked)
    file(REMOVE_RECURSE ${tree})
    execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
    file(GLOB scripts ${tree}/DEBIAN/post*)
    if(scripts)
        file(REMOVE ${scripts})
        execute_process(COMMAND dpkg-deb -Zxz --root-owner-group --build ${tree} ${package}
            OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    endif()
    file(REMOVE_RECURSE ${tree})
endforeach()
