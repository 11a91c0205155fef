# Copies FROM to TO unless TO is there: a build must not overwrite an operator's settings.
if(NOT EXISTS "${TO}")
    configure_file("${FROM}" "${TO}" COPYONLY)
endif()
