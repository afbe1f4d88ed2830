# Compiles CDL text into netCDF files at build time.
#
# zdsg_compile_cdl(<target> OUTPUT_DIR <dir> CDL <files...>)
#   a.cdl      -> <dir>/a.nc (classic) and <dir>/a_nc4.nc (netCDF-4)
#   b.nc4.cdl  -> <dir>/b.nc (netCDF-4 only: groups, strings, unsigned and 64-bit types)
#   c.cdf5.cdl -> <dir>/c.nc (CDF5)
find_program(NCGEN_EXECUTABLE ncgen REQUIRED)

function(zdsg_compile_cdl target)
  cmake_parse_arguments(ARG "" "OUTPUT_DIR" "CDL" ${ARGN})
  set(outputs)
  foreach(cdl IN LISTS ARG_CDL)
    get_filename_component(name "${cdl}" NAME)
    if(name MATCHES "^(.*)\\.nc4\\.cdl$")
      set(pairs "${CMAKE_MATCH_1}.nc|nc4")
    elseif(name MATCHES "^(.*)\\.cdf5\\.cdl$")
      set(pairs "${CMAKE_MATCH_1}.nc|cdf5")
    else()
      string(REGEX REPLACE "\\.cdl$" "" stem "${name}")
      set(pairs "${stem}.nc|classic" "${stem}_nc4.nc|nc4")
    endif()
    foreach(pair IN LISTS pairs)
      string(REPLACE "|" ";" parts "${pair}")
      list(GET parts 0 outname)
      list(GET parts 1 kind)
      set(out "${ARG_OUTPUT_DIR}/${outname}")
      add_custom_command(
        OUTPUT "${out}"
        COMMAND ${CMAKE_COMMAND} -E make_directory "${ARG_OUTPUT_DIR}"
        COMMAND ${NCGEN_EXECUTABLE} -k ${kind} -o "${out}" "${cdl}"
        DEPENDS "${cdl}"
        COMMENT "ncgen ${name} -> ${outname}"
        VERBATIM)
      list(APPEND outputs "${out}")
    endforeach()
  endforeach()
  add_custom_target(${target} ALL DEPENDS ${outputs})
endfunction()
