# Where cmake --install puts what: the programs into the usual folders, what only they read into folders of their own.
include(GNUInstallDirs)
set(gantrel_private_libraries ${CMAKE_INSTALL_LIBDIR}/gantrel)
set(gantrel_plugins ${gantrel_private_libraries}/plugins)
set(gantrel_documentation ${CMAKE_INSTALL_DATADIR}/gantrel/documentation)

if(APPLE)
    set(gantrel_own_folder @loader_path)
else()
    set(gantrel_own_folder $ORIGIN)
endif()

# gantrel_find_way(variable FROM TO): from one of these folders to another, wherever the whole is put.
function(gantrel_find_way variable from to)
    foreach(end from to)
        cmake_path(ABSOLUTE_PATH ${end} BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} NORMALIZE)
    endforeach()
    cmake_path(RELATIVE_PATH to BASE_DIRECTORY ${from} OUTPUT_VARIABLE way)
    set(${variable} ${way} PARENT_SCOPE)
endfunction()

# gantrel_look_for_libraries(target FROM): the target, which is installed into that folder, finds the project's libraries
# from there.
function(gantrel_look_for_libraries target from)
    gantrel_find_way(private ${from} ${gantrel_private_libraries})
    gantrel_find_way(public ${from} ${CMAKE_INSTALL_LIBDIR})
    set_target_properties(${target} PROPERTIES
        INSTALL_RPATH "${gantrel_own_folder}/${private};${gantrel_own_folder}/${public}")
endfunction()

# What has to be built before cmake --install; whoever installs something adds it.
add_custom_target(installed)
