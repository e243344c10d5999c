# The Debian packages, made by `cpack` in the build folder (scripts/paketle does it in one step).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zembera)
set(CPACK_PACKAGE_CONTACT "Korvena Zembera <paket@korvena.example>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://korvena.example/zembera")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL zembera-cli zembera)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Before the archives are written every file gets the day of the version and the usual rights.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/settle.cmake)

# An older package looks at the format that the installed one writes before it takes its place.
set(FILE_FORMAT ${file_format})
foreach(component zembera-cli zembera zembera-sunucu)
  set(PACKAGE ${component})
  configure_file(debian/preinst.in ${out}/${component}/preinst @ONLY)
  execute_process(COMMAND chmod 755 ${out}/${component}/preinst)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA ${out}/${component}/preinst)
endforeach()

set(CPACK_COMPONENT_ZEMBERA-CLI_DESCRIPTION "shell commands for companies on Zembera's servers
Makes one database per company and fiscal period, keeps users and their
rights, edits parameters and definitions, upgrades old databases, carries a
closed year over into the next one, and backs companies up, restores and
moves them. Works on an embedded server that needs nothing else or on
Microsoft SQL Server.")
set(CPACK_DEBIAN_ZEMBERA-CLI_PACKAGE_RECOMMENDS "tdsodbc")
set(CPACK_DEBIAN_ZEMBERA-CLI_PACKAGE_SUGGESTS "zembera-sunucu")

set(CPACK_COMPONENT_ZEMBERA_DESCRIPTION "administrator console of a retail and accounting suite
The desktop program over the same procedures as the shell commands:
companies, users and their rights, parameters, upgrade, rollover, backup.
The first window prepares this machine, connects to a server or opens
example data.")
set(CPACK_DEBIAN_ZEMBERA_PACKAGE_DEPENDS "zembera-cli (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_ZEMBERA_PACKAGE_RECOMMENDS "fonts-dejavu-core, qt6-wayland")

if(TARGET zembera-sunucu)
  list(APPEND CPACK_COMPONENTS_ALL zembera-sunucu)
  set(CPACK_COMPONENT_ZEMBERA-SUNUCU_DESCRIPTION "embedded server of Zembera as a service on the network
Serves the companies of one data folder to the programs of other machines,
by the protocol of Microsoft SQL Server.")
  set(CPACK_DEBIAN_ZEMBERA-SUNUCU_PACKAGE_DEPENDS "zembera-cli (= ${PROJECT_VERSION}), adduser")
  set(control ${out}/zembera-sunucu/preinst)
  foreach(script postinst prerm postrm)
    configure_file(debian/${script} ${out}/zembera-sunucu/${script} COPYONLY)
    execute_process(COMMAND chmod 755 ${out}/zembera-sunucu/${script})
    list(APPEND control ${out}/zembera-sunucu/${script})
  endforeach()
  file(CONFIGURE OUTPUT ${out}/zembera-sunucu/conffiles CONTENT "/etc/default/zembera-sunucu\n")
  set(CPACK_DEBIAN_ZEMBERA-SUNUCU_PACKAGE_CONTROL_EXTRA ${control} ${out}/zembera-sunucu/conffiles)
endif()
include(CPack)
