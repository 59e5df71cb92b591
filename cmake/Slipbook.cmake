# Common settings for every target of the project. Logic libraries link Qt Core only, so a
# window header included from logic code fails to compile; windows live in ui libraries.

set(SLIPBOOK_WARNINGS -Wall -Wextra -Wpedantic -Werror -Wshadow=local -Wnon-virtual-dtor
    -Wno-missing-field-initializers)

function(slipbook_settings target)
    # No fused multiply-add: the calculators' last digit depends on each step being rounded.
    target_compile_options(${target} PRIVATE ${SLIPBOOK_WARNINGS} -ffp-contract=off)
    target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS
        QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
    if(SLIPBOOK_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined
            -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
endfunction()

# slipbook_logic_library(name SOURCES ... [PUBLIC_DEPS ...] [PRIVATE_DEPS ...])
function(slipbook_logic_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC_DEPS;PRIVATE_DEPS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    # Core's signals are allowed here: the change notifier is one.
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    slipbook_settings(${name})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC Qt6::Core ${ARG_PUBLIC_DEPS} PRIVATE ${ARG_PRIVATE_DEPS})
    foreach(dep IN LISTS ARG_PUBLIC_DEPS ARG_PRIVATE_DEPS)
        if(dep MATCHES "Qt6::(Widgets|Gui|PrintSupport|Charts)")
            message(FATAL_ERROR "${name} is a logic library and must not link ${dep}")
        endif()
    endforeach()
endfunction()

# slipbook_ui_library(name SOURCES ... [PUBLIC_DEPS ...] [PRIVATE_DEPS ...])
function(slipbook_ui_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC_DEPS;PRIVATE_DEPS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    slipbook_settings(${name})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC Qt6::Widgets ${ARG_PUBLIC_DEPS} PRIVATE ${ARG_PRIVATE_DEPS})
endfunction()

# slipbook_test(name [GUI] SOURCES ... DEPS ... [TIMEOUT seconds]): one GoogleTest executable per
# subsystem. A GUI test program gets the window test support and its main, which makes the one
# application object.
function(slipbook_test name)
    cmake_parse_arguments(ARG "GUI" "TIMEOUT" "SOURCES;DEPS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    slipbook_settings(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/tests)
    if(ARG_GUI)
        target_link_libraries(${name} PRIVATE ${ARG_DEPS} slipbook_testsupport_gui GTest::gtest)
    else()
        target_link_libraries(${name} PRIVATE ${ARG_DEPS} GTest::gtest GTest::gtest_main)
    endif()
    # Where the built program, its template and its tools are.
    target_compile_definitions(${name} PRIVATE SLIPBOOK_BIN_DIR="${CMAKE_BINARY_DIR}/bin")
    set(timeout)
    if(ARG_TIMEOUT)
        set(timeout TIMEOUT ${ARG_TIMEOUT})
    endif()
    gtest_discover_tests(${name}
        PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" ${timeout}
        DISCOVERY_TIMEOUT 60)
endfunction()
