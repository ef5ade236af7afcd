/*
 * The page's files as they are, in the program. Each has a name for its beginning and one for its end.
 */
        .macro  file name, path
        .global \name
        .global \name\()_end
        .type   \name, %object
        .type   \name\()_end, %object
\name:
        .incbin "\path"
\name\()_end:
        .byte   0
        .endm

        .section .rodata
        file    zvweb_page, "page/index.html"
        file    zvweb_style, "page/zvweb.css"
        file    zvweb_script_known, "page/known.js"
        file    zvweb_script_now, "page/now.js"
        file    zvweb_script_server, "page/server.js"
        file    zvweb_script_settings, "page/settings.js"
        file    zvweb_script_view, "page/view.js"
        file    zvweb_script_words, "page/words.js"
        file    zvweb_script_zvweb, "page/zvweb.js"
        file    zvweb_icon, "page/icon.svg"
        file    zvweb_openapi, "openapi.json"

        .section .note.GNU-stack, "", %progbits
