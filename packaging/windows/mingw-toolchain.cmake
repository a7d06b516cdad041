# Cross compilation for Windows, with the mingw-w64 compiler variant that supports std::thread.
# TESSEL_WINDOWS_QT is the folder of a Qt for Windows (packaging/windows/build-qt prints it).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Libraries and headers come from the target only, never from this machine's Qt or test library. Only
# Qt's tools (moc, rcc) run on this machine.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
if(TESSEL_WINDOWS_QT)
  list(APPEND CMAKE_FIND_ROOT_PATH ${TESSEL_WINDOWS_QT})
  set(QT_HOST_PATH /usr)
  set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake)
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
