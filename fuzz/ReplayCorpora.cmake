# cmake -DPROGRAMS=<folder> -DNAMES=<a,b,...> -DCORPUS=<folder> -P ReplayCorpora.cmake
# Replays CORPUS/<name> through PROGRAMS/fuzz_<name> for every name; fails with the first
# target that fails.
string(REPLACE "," ";" names "${NAMES}")
foreach(name IN LISTS names)
    execute_process(COMMAND ${PROGRAMS}/fuzz_${name} ${CORPUS}/${name} RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "fuzz_${name} failed on fuzz/corpus/${name}: ${result}")
    endif()
endforeach()
