# Works out which packages the programs need. Runs in CPack, since CPack itself can't tell what is linked by a program
# from what is linked by the module of the chat views, without which all else works.

function(shared_libraries variable)
  execute_process(COMMAND dpkg-shlibdeps -O -xorvandel ${ARGN}
                  WORKING_DIRECTORY ${CPACK_PACKAGE_DIRECTORY}/shlibdeps
                  OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  if(NOT output MATCHES "^shlibs:Depends=([^\n]+)")
    message(FATAL_ERROR "dpkg-shlibdeps printed: ${output}")
  endif()
  set(${variable} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

# dpkg-shlibdeps runs only in a source tree.
file(WRITE ${CPACK_PACKAGE_DIRECTORY}/shlibdeps/debian/control "Source: orvandel\n\nPackage: orvandel\nArchitecture: any\n")
set(folder ${CPACK_ORVANDEL_PROGRAMS})
shared_libraries(programs "-e${folder}/orvandel" "-e${folder}/orvandel-cli" "-e${folder}/Velmora Orvandel")
shared_libraries(chat "-e${folder}/orvandel-chat.so")
file(REMOVE_RECURSE ${CPACK_PACKAGE_DIRECTORY}/shlibdeps)

# What the programs need already isn't recommended again.
string(REPLACE ", " ";" chat "${chat}")
foreach(dependency IN LISTS chat)
  string(REGEX REPLACE " .*" "" name "${dependency}")
  string(FIND " ${programs}" " ${name} " place)
  if(place EQUAL -1)
    string(APPEND recommended "${dependency}, ")
  endif()
endforeach()

# pkexec starts the window with administrator rights; on a desktop, an agent asks for the password.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "${programs}, pkexec, hicolor-icon-theme")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "${recommended}mate-polkit | polkit-1-auth-agent, xdg-utils, qt6-wayland, fonts-crosextra-carlito, fonts-noto-color-emoji, fonts-droid-fallback | fonts-noto-cjk, fonts-nanum | fonts-noto-cjk")
