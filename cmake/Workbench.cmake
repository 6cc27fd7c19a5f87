# The workbench is built where its libraries are; panel and tests do without it.
find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND)
    pkg_check_modules(WORKBENCH_LIBRARIES QUIET IMPORTED_TARGET GLOBAL mlt++-7 mlt-framework-7 libswscale libxml-2.0 libsoup-3.0 sqlite3)
endif()
option(WORKBENCH "Build the workbench programs" ${WORKBENCH_LIBRARIES_FOUND})

if(WORKBENCH AND NOT WORKBENCH_LIBRARIES_FOUND)
    message(FATAL_ERROR "WORKBENCH is on, but mlt++-7, libswscale, libxml-2.0, libsoup-3.0 or sqlite3 is missing. "
        "Install them (cmake/packages.txt lists them) or configure with -DWORKBENCH=OFF.")
endif()
if(WORKBENCH)
    add_subdirectory(Workbench)
else()
    message(STATUS "The workbench is left out: mlt++-7, libswscale, libxml-2.0, libsoup-3.0 or sqlite3 is missing.")
endif()
