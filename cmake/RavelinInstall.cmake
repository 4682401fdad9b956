# Installing the library: `cmake --install` puts the two static libraries, the
# headers a host application needs and a CMake package ("Ravelin") with the
# targets Ravelin::Core, Ravelin::Widgets and Ravelin::Ravelin (both).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(RAVELIN_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/ravelin")
set(RAVELIN_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/Ravelin")
set(RAVELIN_INSTALL_TRANSLATIONSDIR "${CMAKE_INSTALL_DATADIR}/ravelin/translations")
set(RAVELIN_QT_MINIMUM 6.4)

# What a host includes: the navigation host and its delegate, the session
# inputs, task update events and the notification centre, and the interfaces a
# host may implement (pictures, camera permission, camera frames, vibration,
# the offline store) and the library's own SQLite store, with the headers these
# include.
set(RAVELIN_PUBLIC_HEADERS
    api/clock.h
    api/guardedpointer.h
    api/guardedtarget.h
    api/json.h
    api/networkmanagerdelegate.h
    api/offlinestore.h
    api/outboxentry.h
    api/sqliteofflinestore.h
    api/trustpolicy.h
    comments/taskcommentpayload.h
    host/cameraframesource.h
    host/delays.h
    host/camerapermission.h
    host/hapticfeedback.h
    host/imagepicker.h
    host/notificationcenter.h
    host/ravelinnavvc.h
    host/ravelinnavvcdelegate.h
    host/taskupdateevent.h
    host/translations.h
    items/item.h
    items/itempayload.h
    items/itemstatus.h
    items/itemsupdatepayload.h
    tasks/dashboardvcdelegate.h
)

foreach(target ravelin_core ravelin_ui)
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
        $<INSTALL_INTERFACE:${RAVELIN_INSTALL_INCLUDEDIR}>)
endforeach()
set_target_properties(ravelin_core PROPERTIES EXPORT_NAME Core)
set_target_properties(ravelin_ui PROPERTIES EXPORT_NAME Widgets)

add_library(ravelin INTERFACE)
target_link_libraries(ravelin INTERFACE ravelin_core ravelin_ui)
set_target_properties(ravelin PROPERTIES EXPORT_NAME Ravelin)
add_library(Ravelin::Core ALIAS ravelin_core)
add_library(Ravelin::Widgets ALIAS ravelin_ui)
add_library(Ravelin::Ravelin ALIAS ravelin)

install(TARGETS ravelin_core ravelin_ui ravelin ${RAVELIN_RESOURCE_TARGETS}
    EXPORT RavelinTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    OBJECTS DESTINATION ${CMAKE_INSTALL_LIBDIR}/ravelin-objects)
foreach(header ${RAVELIN_PUBLIC_HEADERS})
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${header} DESTINATION ${RAVELIN_INSTALL_INCLUDEDIR}/${folder})
endforeach()
install(FILES ${RAVELIN_QM_FILES} DESTINATION ${RAVELIN_INSTALL_TRANSLATIONSDIR})
install(EXPORT RavelinTargets NAMESPACE Ravelin:: DESTINATION ${RAVELIN_INSTALL_CMAKEDIR})

configure_package_config_file(cmake/RavelinConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/RavelinConfig.cmake
    INSTALL_DESTINATION ${RAVELIN_INSTALL_CMAKEDIR}
    PATH_VARS RAVELIN_INSTALL_TRANSLATIONSDIR)
# 0.x: a minor version may change the interface.
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/RavelinConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/RavelinConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/RavelinConfigVersion.cmake
    DESTINATION ${RAVELIN_INSTALL_CMAKEDIR})
