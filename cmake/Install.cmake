include(GNUInstallDirs)
# The workbench lies in bin, what it loads in lib/qal, the contract's headers in include/qal.
set(QAL_MODULE_DIR ${CMAKE_INSTALL_LIBDIR}/qal)
set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/../${QAL_MODULE_DIR}")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
