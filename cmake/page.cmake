# The page that `ztdecode report` writes, out of web/: its modules become one script, in the order of their
# imports, and everything a source of the command. As a script (-P) it does that; included, it says when.

if(NOT CMAKE_SCRIPT_MODE_FILE)
    file(GLOB_RECURSE page_files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/web/*.js ${PROJECT_SOURCE_DIR}/web/*.css
        ${PROJECT_SOURCE_DIR}/web/page.html)
    list(FILTER page_files EXCLUDE REGEX "/(node_modules|tests)/")
    set(page_source ${PROJECT_BINARY_DIR}/page_assets.cpp)
    add_custom_command(OUTPUT ${page_source}
        COMMAND ${CMAKE_COMMAND} -DWEB=${PROJECT_SOURCE_DIR}/web -DOUT=${page_source}
            -P ${CMAKE_CURRENT_LIST_FILE}
        DEPENDS ${page_files} ${CMAKE_CURRENT_LIST_FILE}
        COMMENT "Putting the page together")
    return()
endif()

cmake_minimum_required(VERSION 3.25)

# A module behind those that it imports, without the words `import` and `export`: all share one scope then.
set(script "")
set(taken)
function(take module)
    if(module IN_LIST taken)
        return()
    endif()
    list(APPEND taken ${module})
    set(taken ${taken} PARENT_SCOPE)
    file(READ ${module} text)
    get_filename_component(folder ${module} DIRECTORY)
    string(REGEX MATCHALL "from \"[^\"]+\"" imports "${text}")
    foreach(import ${imports})
        string(REGEX REPLACE "from \"([^\"]+)\"" "\\1" import ${import})
        get_filename_component(import ${import} ABSOLUTE BASE_DIR ${folder})
        take(${import})
    endforeach()
    set(taken ${taken} PARENT_SCOPE)
    string(REGEX REPLACE "(^|\n)import [^\"]*\"[^\"]*\";" "" text "${text}")
    string(REGEX REPLACE "(^|\n)export " "\\1" text "${text}")
    set(script "${script}${text}" PARENT_SCOPE)
endfunction()
take(${WEB}/main.js)

# Bytes as numbers: there is no string that would have to be quoted.
set(source "#include \"tool/report/page_assets.hpp\"\n\nnamespace ztdecode::tool {\n\n")
function(add_asset name file)
    file(READ ${file} bytes HEX)
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
    string(REGEX REPLACE "((.......){16})" "\\1\n" bytes "${bytes}")
    set(source "${source}static constexpr char ${name}_bytes[] = {\n${bytes}};\n" PARENT_SCOPE)
    set(views "${views}const std::string_view ${name}(${name}_bytes, sizeof ${name}_bytes);\n" PARENT_SCOPE)
endfunction()
file(WRITE ${OUT}.js "${script}")
add_asset(page_template ${WEB}/page.html)
add_asset(page_style ${WEB}/page.css)
add_asset(page_script ${OUT}.js)
file(WRITE ${OUT} "${source}\n${views}\n}  // namespace ztdecode::tool\n")
