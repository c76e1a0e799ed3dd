# orlexui_module(name DIRS d1 [d2...] [NORECURSE] [DEPENDS t1 ...] [LIBS l1 ...])
# Makes the static archive orlexui_<name> from the *.cpp files of the folders. With
# NORECURSE only the folders themselves are searched (foundation/platform/gui is a module
# of its own). An empty folder still yields a target, so dependants link the same way
# before and after the folder gets code.
set(ORLEXUI_MODULES "" CACHE INTERNAL "")
function(orlexui_module name)
  cmake_parse_arguments(M "NORECURSE" "" "DIRS;DEPENDS;LIBS" ${ARGN})
  set(srcs "")
  foreach(d IN LISTS M_DIRS)
    if(M_NORECURSE)
      file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${d}/*.cpp)
    else()
      file(GLOB_RECURSE found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${d}/*.cpp)
    endif()
    list(APPEND srcs ${found})
  endforeach()
  set(t orlexui_${name})
  if(srcs)
    add_library(${t} STATIC ${srcs})
    target_include_directories(${t} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    target_compile_definitions(${t} PRIVATE ORLEXUI_BUILDING=1)
    if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
      target_compile_options(${t} PRIVATE -Wall -Wextra -Wno-unused-parameter)
    endif()
    set(kind PUBLIC)
  else()
    add_library(${t} INTERFACE)
    target_include_directories(${t} INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    set(kind INTERFACE)
  endif()
  if(M_DEPENDS OR M_LIBS)
    target_link_libraries(${t} ${kind} ${M_DEPENDS} ${M_LIBS})
  endif()
  set(ORLEXUI_MODULES ${ORLEXUI_MODULES} ${t} CACHE INTERNAL "")
endfunction()

# The shared library: every module archive taken whole, so static registrations
# (runtime classes, registered messages) are all present for the host. The archives also
# reach it as ordinary dependencies of one another, so each is named once on its link
# line, dependants first, and every appearance of an archive takes the whole-archive
# feature (otherwise the linker would be given one archive in two ways).
function(orlexui_shared_library)
  file(WRITE ${PROJECT_BINARY_DIR}/orlexui_shared.cpp "// the library is made of the module archives\n")
  add_library(orlexui SHARED ${PROJECT_BINARY_DIR}/orlexui_shared.cpp)
  add_library(orlexui::orlexui ALIAS orlexui)
  set(whole "")
  foreach(m IN LISTS ORLEXUI_MODULES)
    get_target_property(type ${m} TYPE)
    if(type STREQUAL "STATIC_LIBRARY")
      list(APPEND whole ${m})
      set_property(TARGET orlexui PROPERTY LINK_LIBRARY_OVERRIDE_${m} WHOLE_ARCHIVE)
    endif()
  endforeach()
  list(REVERSE whole)
  set(qt Qt6::Core Qt6::Gui Qt6::Widgets Qt6::PrintSupport)
  target_link_libraries(orlexui PUBLIC ${qt} Threads::Threads)
  # An undefined symbol of the library's own is a build error, not a host's load error.
  # (A clang sanitizer runtime lives in the executable, so there it can't be checked.)
  if(NOT (ORLEXUI_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES "Clang"))
    target_link_options(orlexui PRIVATE -Wl,--no-undefined)
  endif()
  set_property(TARGET orlexui PROPERTY LINK_LIBRARIES ${whole} ${qt} Threads::Threads ${CMAKE_DL_LIBS})
  target_include_directories(orlexui PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/orlexui>)
  set_target_properties(orlexui PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()

# orlexui_test(name SOURCES... LIBS ... [LOCK resource]): one GoogleTest executable, its
# cases listed in ctest. LOCK keeps its cases from running at the same time as each other
# (ctest runs each case as a process of its own), for cases that share a file of the
# process such as the custom colour tables beside the executable.
function(orlexui_test name)
  cmake_parse_arguments(T "" "LOCK" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} GTest::gtest GTest::gmock GTest::gtest_main)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  set(props ENVIRONMENT QT_QPA_PLATFORM=offscreen)
  if(T_LOCK)
    list(APPEND props RESOURCE_LOCK ${T_LOCK})
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES ${props})
endfunction()
