# What is installed with the tool and the window: sample images, the file types and their icon.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Images
        DESTINATION ${CMAKE_INSTALL_DATADIR}/marovia COMPONENT tool)
install(FILES marovia-mime.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages COMPONENT tool)
install(FILES marovia.magic
        DESTINATION ${CMAKE_INSTALL_DATADIR}/marovia COMPONENT tool)
install(FILES marovia.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT tool)
install(FILES marovia.png
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/128x128/apps COMPONENT tool)

# The manuals, and completion in the shells.
file(GLOB manuals ${PROJECT_SOURCE_DIR}/man/*.1)
list(REMOVE_ITEM manuals ${PROJECT_SOURCE_DIR}/man/marovia-window.1)
install(FILES ${manuals} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
if(TARGET marovia-window)
  install(FILES ${PROJECT_SOURCE_DIR}/man/marovia-window.1
          DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT window)
endif()
set(completions ${PROJECT_SOURCE_DIR}/completions)
foreach(program marovia marovia-window)
  install(FILES ${completions}/marovia.bash RENAME ${program}
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tool)
  install(FILES ${completions}/marovia.fish RENAME ${program}.fish
          DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tool)
endforeach()
set(MAROVIA_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
    CACHE STRING "Folder of zsh's completions below the prefix")
install(FILES ${completions}/_marovia DESTINATION ${MAROVIA_ZSH_COMPLETIONS} COMPONENT tool)
