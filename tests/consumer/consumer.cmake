# Registers the tests that look at Kanvo from outside, as projects that use it do. Included by tests/CMakeLists.txt.
set(consumer_work "${CMAKE_CURRENT_BINARY_DIR}/consumer")

function(kanvo_consumer_test name)
    add_test(NAME consumer.${name}
        COMMAND "${CMAKE_COMMAND}" -D WAY=${name} -D SOURCE=${PROJECT_SOURCE_DIR} -D BUILD=${PROJECT_BINARY_DIR}
                -D WORK=${consumer_work} -D COMPILER=${CMAKE_CXX_COMPILER} -D GENERATOR=${CMAKE_GENERATOR}
                -P "${PROJECT_SOURCE_DIR}/tests/consumer/check.cmake")
    set_tests_properties(consumer.${name} PROPERTIES TIMEOUT 600 ${ARGN})
endfunction()

kanvo_consumer_test(Install FIXTURES_SETUP kanvo_installed)
kanvo_consumer_test(FindPackage FIXTURES_REQUIRED kanvo_installed)
kanvo_consumer_test(PkgConfig FIXTURES_REQUIRED kanvo_installed)
kanvo_consumer_test(EveryInstalledHeaderCompilesAlone FIXTURES_REQUIRED kanvo_installed)
kanvo_consumer_test(AddSubdirectory)
