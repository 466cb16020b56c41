# Each bench/NAME.cpp is a Google Benchmark program bench_NAME. They are measured by hand, not by ctest.
if(BRISOLAN_BENCH)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/bench/*.cpp)
    if(sources)
        find_package(benchmark REQUIRED)
    endif()
    foreach(source IN LISTS sources)
        cmake_path(GET source STEM name)
        add_executable(bench_${name} ${source})
        target_link_libraries(bench_${name} PRIVATE
            brisolan_flags brisolan_parts benchmark::benchmark benchmark::benchmark_main)
    endforeach()
endif()
