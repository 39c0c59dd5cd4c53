# What every target of the project shares.

add_library(shotly_flags INTERFACE)
target_compile_options(shotly_flags INTERFACE -Wall -Wextra -Wshadow -Wconversion -Werror)
target_compile_definitions(shotly_flags INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
    QT_NO_FOREACH QT_NO_KEYWORDS SHOTLY_VERSION="${PROJECT_VERSION}")
target_include_directories(shotly_flags INTERFACE ${PROJECT_SOURCE_DIR}/src)
# What users run is hardened as Debian hardens its own programs (the compiler makes them position independent
# by itself), and does not know where it was built.
set(hardening -fstack-protector-strong -Wformat -Werror=format-security -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
target_compile_options(shotly_flags INTERFACE "$<$<CONFIG:Release>:${hardening}>")
target_compile_definitions(shotly_flags INTERFACE $<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)
target_link_options(shotly_flags INTERFACE $<$<CONFIG:Release>:LINKER:-z,relro,-z,now,--as-needed>)
if(SHOTLY_SANITIZE)
    # The instrumented code makes GCC see uninitialised values where there are none.
    target_compile_options(shotly_flags INTERFACE -fsanitize=address,undefined
        -fno-sanitize-recover=undefined -fno-omit-frame-pointer -Wno-maybe-uninitialized)
    target_link_options(shotly_flags INTERFACE -fsanitize=address,undefined)
endif()
if(SHOTLY_FUZZ)
    target_compile_options(shotly_flags INTERFACE -fsanitize=fuzzer-no-link,address,undefined
        -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(shotly_flags INTERFACE -fsanitize=address,undefined)
endif()

# shotly_library(<name> SOURCES ... LINKS ...)
function(shotly_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC shotly_flags ${arg_LINKS})
endfunction()

# shotly_test(<name> LABEL plain|widget|office|desktop SOURCES ... LINKS ...)
# One GoogleTest program. A plain test needs no display, a widget test runs on Qt's offscreen platform, an
# office test is a plain one that counts as skipped where LibreOffice is not installed, a desktop test wants a
# real X server with a window manager (scripts/with-desktop.sh gives it one).
function(shotly_test name)
    cmake_parse_arguments(arg "" "LABEL" "SOURCES;LINKS" ${ARGN})
    if(arg_LABEL STREQUAL "plain")
        set(main_file ${PROJECT_SOURCE_DIR}/tests/support/main_plain.cpp)
        set(qt_library Qt6::Gui)
    elseif(arg_LABEL STREQUAL "office")
        set(main_file ${PROJECT_SOURCE_DIR}/tests/support/main_office.cpp)
        set(qt_library Qt6::Gui platform_office)
    else()
        set(main_file ${PROJECT_SOURCE_DIR}/tests/support/main_widget.cpp)
        set(qt_library Qt6::Widgets Qt6::Test)
    endif()
    add_executable(${name} ${arg_SOURCES} ${main_file})
    target_link_libraries(${name} PRIVATE ${arg_LINKS} test_support ${qt_library})
    add_dependencies(${name} delivered)
    add_test(NAME ${name} COMMAND ${name})
    set(environment "")
    if(NOT arg_LABEL STREQUAL "desktop")
        set(environment "QT_QPA_PLATFORM=offscreen")
    endif()
    set_tests_properties(${name} PROPERTIES LABELS ${arg_LABEL} TIMEOUT 300 SKIP_RETURN_CODE 77
        ENVIRONMENT "${environment};XDG_RUNTIME_DIR=${PROJECT_BINARY_DIR}/runtime;UBSAN_OPTIONS=print_stacktrace=1")
    if(arg_LABEL STREQUAL "desktop")
        set_tests_properties(${name} PROPERTIES RUN_SERIAL ON)
    endif()
endfunction()
