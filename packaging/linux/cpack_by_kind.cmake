# Read by CPack for each kind of package: an RPM installs into /usr, a tar.gz is unpacked wherever one likes.
if(CPACK_GENERATOR STREQUAL "RPM")
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
endif()
