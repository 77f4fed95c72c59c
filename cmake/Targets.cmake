# The targets, one per layer, and the one call with which a module's folder fills them.
#
#   brisko_platform   the host seam and the small base below it (log, queues, property lists)
#   brisko_engine     every module's scanner, tree, rules and removal; no toolkit
#   brisko_terminal   the command line, a client of the engines
#   brisko_window     pages and toolkit, the other client
#
# A target sees the folders of the layers below it and nothing else, so an include against the
# arrows does not compile.

add_library(brisko_platform STATIC)
add_library(brisko_engine STATIC)
add_library(brisko_terminal STATIC)
add_library(brisko_window STATIC)

foreach(layer platform engine terminal window)
  target_link_libraries(brisko_${layer} PUBLIC brisko_options)
endforeach()
# Formatting and the log's sink are built from their headers, see FormatLibrary.cpp.
target_link_libraries(brisko_platform PUBLIC Threads::Threads
                      PRIVATE PkgConfig::PLIST ${CMAKE_DL_LIBS})
target_compile_definitions(brisko_platform PRIVATE SPDLOG_FMT_EXTERNAL)
target_link_libraries(brisko_engine PUBLIC brisko_platform)
# The headers of libraries that are loaded by their first use, see OnDemandLibrary.h.
target_include_directories(brisko_platform PRIVATE
  ${MOUNT_INCLUDE_DIRS} ${UDEV_INCLUDE_DIRS} ${SYSTEMD_INCLUDE_DIRS})
target_include_directories(brisko_engine PRIVATE ${CURL_INCLUDE_DIRS} ${SQLITE3_INCLUDE_DIRS})
target_link_libraries(brisko_terminal PUBLIC brisko_engine
                      PRIVATE CLI11::CLI11 nlohmann_json::nlohmann_json)
target_link_libraries(brisko_window PUBLIC brisko_engine Qt6::Widgets
                      PRIVATE Qt6::Svg Qt6::Network Qt6::DBus PkgConfig::XCB)
# What goes at the pace of a person is the better the smaller it is; the terminal's documents may be
# long. With sanitizers neither is worth what optimising takes: a third of the time to build them.
target_compile_options(brisko_terminal PRIVATE $<$<CONFIG:Release>:-O2>)
target_compile_options(brisko_window PRIVATE $<$<CONFIG:Release>:-Os>)
if(BRISKO_SANITIZE)
  target_compile_options(brisko_terminal PRIVATE -O0)
  target_compile_options(brisko_window PRIVATE -O0)
endif()
# Two large libraries of templates, which every command reads.
target_precompile_headers(brisko_terminal PRIVATE <CLI/CLI.hpp> <nlohmann/json.hpp>)
set_target_properties(brisko_window PROPERTIES AUTOMOC ON AUTOUIC ON)
target_compile_definitions(brisko_window PUBLIC QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII)
target_precompile_headers(brisko_window PRIVATE <QtWidgets> <functional> <memory> <string> <vector>)

# brisko_module(ENGINE sources… PAGE sources and forms…), called in the module's own folder.
function(brisko_module)
  cmake_parse_arguments(PARSE_ARGV 0 MODULE "" "" "ENGINE;PAGE")
  if(MODULE_ENGINE)
    list(TRANSFORM MODULE_ENGINE PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    target_sources(brisko_engine PRIVATE ${MODULE_ENGINE})
    target_include_directories(brisko_engine PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  endif()
  if(MODULE_PAGE)
    list(TRANSFORM MODULE_PAGE PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    target_sources(brisko_window PRIVATE ${MODULE_PAGE})
    target_include_directories(brisko_window PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  endif()
endfunction()
