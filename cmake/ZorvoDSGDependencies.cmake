# Finds the libraries ZorvoDSG is built on. Included by the project and by the installed package
# configuration, so that a consumer gets the same imported targets.
include(CMakeFindDependencyMacro)

find_dependency(netCDF CONFIG)
find_dependency(PROJ CONFIG)
find_dependency(LibXml2)
find_dependency(RapidJSON CONFIG)
find_dependency(PkgConfig)
if(NOT TARGET PkgConfig::UDUNITS2)
  pkg_check_modules(UDUNITS2 REQUIRED IMPORTED_TARGET GLOBAL udunits)
endif()
