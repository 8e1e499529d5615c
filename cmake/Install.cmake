# make install lays the headend's web interface out under one prefix (default /opt/cambioIP):
#   <prefix>/cgi-bin/cambioIP.cgi   the program
#   <prefix>/www/                   the document root: shell page, scripts (tablas.js included),
#                                   styles, images; www/cgi-bin links to ../cgi-bin for BusyBox httpd
#   <prefix>/etc/lighttpd.conf      ready server configurations, both behind a login
#   <prefix>/etc/httpd.conf
#   <prefix>/sbin/cambioIP-login    sets the login
# DESTDIR is honoured. The server configurations are installed only when absent, so that a
# reinstall keeps the installer's changes and the logins set in httpd.conf.
install(TARGETS cambioIP.cgi RUNTIME DESTINATION cgi-bin)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/www/ DESTINATION www)
install(FILES ${CAMBIOIP_TABLAS_JS} DESTINATION www/js)
install(PROGRAMS ${PROJECT_SOURCE_DIR}/install/cambioIP-login DESTINATION sbin)
install(CODE "
  set(destino \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\")
  file(MAKE_DIRECTORY \"\${destino}/www\" \"\${destino}/etc\")
  file(CREATE_LINK ../cgi-bin \"\${destino}/www/cgi-bin\" SYMBOLIC)
  foreach(conf lighttpd.conf httpd.conf)
    if(EXISTS \"\${destino}/etc/\${conf}\")
      message(STATUS \"Kept: \${destino}/etc/\${conf}\")
    else()
      file(READ \"${PROJECT_SOURCE_DIR}/install/\${conf}.in\" texto)
      string(REPLACE \"@PREFIX@\" \"\${CMAKE_INSTALL_PREFIX}\" texto \"\${texto}\")
      file(WRITE \"\${destino}/etc/\${conf}\" \"\${texto}\")
      message(STATUS \"Installing: \${destino}/etc/\${conf}\")
    endif()
  endforeach()
")
