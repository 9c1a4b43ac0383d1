# The Debian package of ZeKL, made by CPack: `cpack -G DEB` in a build tree gives
# zekl_<version>_<arch>.deb with the library, its headers, the CMake package, zekl.pc, the
# tool, its man page and its bash completion. Configure with -DCMAKE_INSTALL_PREFIX=/usr so
# that the library goes to Debian's multiarch folder (lib/<triplet>).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zekl)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "ZeKL")
set(CPACK_PACKAGE_CONTACT "ZeKL developers <zekl@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "read, edit and write diagnostic descriptions of automotive ECUs")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_DESCRIPTION
    "ZeKL reads, edits and writes the XML diagnostic description of one automotive ECU (UDS or KWP): its \
negative response codes, conversions and service instances, and decodes and encodes the messages it describes.

The package holds the shared library libZeKL, its headers, the CMake package (find_package(ZeKL)) and zekl.pc, \
and the command-line tool zekl with its man page and bash completion.")
# The runtime libraries come from the binaries (dpkg-shlibdeps); the headers and the CMake and
# pkg-config files name xerces-c, whose development files they need.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libxerces-c-dev")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

include(CPack)
