# What the two property lists are filled with. The build and the check of the lists both take it from here.
set(FCP_BUNDLE_IDENTIFIER "ai.zelvix.fcp" CACHE STRING
    "The carrier application's bundle identifier; the extension's is this one and .extension")

# fcp_fill_info_plists(FOLDER): writes Extension-Info.plist and Carrier-Info.plist into FOLDER.
function(fcp_fill_info_plists folder)
    foreach(bundle IN ITEMS Extension Carrier)
        configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${bundle}-Info.plist.in ${folder}/${bundle}-Info.plist @ONLY)
    endforeach()
endfunction()
