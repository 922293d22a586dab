# Keys and programs on a real desktop, without the toolkit: X11 and the C library alone.
find_package(X11 REQUIRED COMPONENTS Xi Xtst)
file(GLOB desktop_input_sources CONFIGURE_DEPENDS
  ${CMAKE_SOURCE_DIR}/desktop/input*.cpp ${CMAKE_SOURCE_DIR}/desktop/keymap*.cpp
  ${CMAKE_SOURCE_DIR}/desktop/typist*.cpp ${CMAKE_SOURCE_DIR}/desktop/shell*.cpp)
add_library(strokemind_desktop_input STATIC ${desktop_input_sources})
target_link_libraries(strokemind_desktop_input PUBLIC strokemind_core PRIVATE X11::X11 X11::Xi X11::Xtst)
