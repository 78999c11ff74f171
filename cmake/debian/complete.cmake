# Puts into each package what Debian wants there beyond what is installed: who holds the rights, what
# has changed, where the rules are departed from and why; and packs the manual page.
set(packages library libkorlit0 development libkorlit-dev command korlit)
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC) # or what SOURCE_DATE_EPOCH says

while(packages)
    list(POP_FRONT packages part package)
    set(root ${CPACK_TEMPORARY_DIRECTORY}/${part}${CPACK_PACKAGING_INSTALL_PREFIX})
    set(texts ${root}/share/doc/${package})
    configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright ${texts}/copyright COPYONLY)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${texts}/changelog.Debian @ONLY)
    configure_file(${CPACK_KORLIT_SOURCE}/CHANGELOG.md ${texts}/changelog COPYONLY)
    set(overrides ${CMAKE_CURRENT_LIST_DIR}/${package}.lintian-overrides)
    if(EXISTS ${overrides})
        configure_file(${overrides} ${root}/share/lintian/overrides/${package} COPYONLY)
    endif()
    if(EXISTS ${root}/share/zsh/site-functions)
        file(RENAME ${root}/share/zsh/site-functions ${root}/share/zsh/vendor-completions)
    endif()
    file(GLOB pages ${root}/share/man/man1/*.1)
    execute_process(
        COMMAND gzip -9n ${texts}/changelog.Debian ${texts}/changelog ${pages}
        COMMAND_ERROR_IS_FATAL ANY)
endwhile()
