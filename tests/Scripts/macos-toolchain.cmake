# Configures the project as on macOS, with stand-ins (in the folder STAND_INS) for the compiler and for what packs and
# signs, so that the rules of the build are tried where there is neither the system nor its development kit.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 20.0.0)
set(CMAKE_SYSTEM_PROCESSOR arm64)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES STAND_INS)
set(CMAKE_OSX_SYSROOT ${STAND_INS} CACHE PATH "")
foreach(language IN ITEMS C CXX OBJCXX)
    set(CMAKE_${language}_COMPILER ${STAND_INS}/compiler)
    # What would be learnt by running the compiler.
    set(CMAKE_${language}_COMPILER_ID_RUN 1)
    set(CMAKE_${language}_COMPILER_ID AppleClang)
    set(CMAKE_${language}_COMPILER_VERSION 15.0.0)
    set(CMAKE_${language}_STANDARD_COMPUTED_DEFAULT 17)
    set(CMAKE_${language}_COMPILER_WORKS 1)
    set(CMAKE_${language}_ABI_COMPILED 1)
    set(CMAKE_${language}_SIZEOF_DATA_PTR 8)
endforeach()
set(CMAKE_INSTALL_NAME_TOOL ${STAND_INS}/install_name_tool)
# Headers alone are wanted of these, and only their names of the libraries.
set(nlohmann_json_DIR /usr/share/cmake/nlohmann_json)
file(GLOB GTest_DIR /usr/lib/*/cmake/GTest)
