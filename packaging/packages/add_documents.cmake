# Run by cpack before it packs.
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} upper)
    execute_process(
        COMMAND ${CMAKE_CURRENT_LIST_DIR}/add_documents ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}
            ${CPACK_DEBIAN_${upper}_PACKAGE_NAME} "${CPACK_PACKAGE_CONTACT}"
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()
