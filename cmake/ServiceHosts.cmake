# The hosts that the panel loads its application from. They are fixed at build time; the defaults are reserved
# names, which resolve nowhere.
set(FCP_PRIMARY_HOST "zelvix.example" CACHE STRING "The service's primary domain")
set(FCP_API_HOST "api.zelvix.example" CACHE STRING "The service's programming interface host")

foreach(host IN ITEMS FCP_PRIMARY_HOST FCP_API_HOST)
    if(NOT "${${host}}" MATCHES "^[A-Za-z0-9]([A-Za-z0-9-]*[A-Za-z0-9])?(\\.[A-Za-z0-9]([A-Za-z0-9-]*[A-Za-z0-9])?)*$")
        message(FATAL_ERROR "${host}=\"${${host}}\" is no host name. Give a bare name such as review.example.com, "
            "without scheme, port or path.")
    endif()
endforeach()

if(CMAKE_BUILD_TYPE STREQUAL "Release" AND FCP_PRIMARY_HOST STREQUAL "zelvix.example")
    message(WARNING "FCP_PRIMARY_HOST is still zelvix.example, which resolves nowhere: in production mode this build "
        "shows its error overlay. Set FCP_PRIMARY_HOST and FCP_API_HOST to ship it.")
endif()
