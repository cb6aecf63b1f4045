# Flags shared by all targets of the project.
add_library(orvandel_flags INTERFACE)
target_compile_options(orvandel_flags INTERFACE -Wall -Wextra)
target_compile_definitions(orvandel_flags INTERFACE _FILE_OFFSET_BITS=64 QT_NO_CAST_TO_ASCII
                                                    ORVANDEL_VERSION="${PROJECT_VERSION}")
