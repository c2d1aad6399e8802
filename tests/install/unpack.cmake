# Makes the packages of the build in BUILD, and unpacks them as a system would, below SCRATCH/root.
file(REMOVE_RECURSE ${SCRATCH})
execute_process(COMMAND ${CMAKE_CPACK_COMMAND} --config ${BUILD}/CPackConfig.cmake -B ${SCRATCH}/packages
    COMMAND_ERROR_IS_FATAL ANY)
file(GLOB packages ${SCRATCH}/packages/*.deb)
foreach(package ${packages})
    execute_process(COMMAND dpkg-deb --extract ${package} ${SCRATCH}/root COMMAND_ERROR_IS_FATAL ANY)
endforeach()
