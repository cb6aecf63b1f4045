# Generates the five pages from the parts in "source/", each with the hashes of its style and script in its policy.
#   cmake -D FOLDER=folder [-D CHECK=ON] -P template/pages.cmake
# With CHECK nothing is written; it fails when a page in the folder is out of date.
cmake_minimum_required(VERSION 3.16)
set(source ${CMAKE_CURRENT_LIST_DIR}/source)

# base64(RESULT HEX): converts 32 bytes from hexadecimal to base64.
function(base64 result hex)
  set(digits "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
  set(text "")
  foreach(at RANGE 0 60 6)
    string(SUBSTRING "${hex}00" ${at} 6 group)
    foreach(shift 18 12 6 0)
      math(EXPR digit "(0x${group} >> ${shift}) & 63")
      string(SUBSTRING ${digits} ${digit} 1 character)
      string(APPEND text ${character})
    endforeach()
  endforeach()
  string(SUBSTRING ${text} 0 43 text)
  set(${result} "${text}=" PARENT_SCOPE)
endfunction()

# hash_of(RESULT TEXT): hash of an element in a policy. It includes the line end after the opening tag.
function(hash_of result text)
  string(SHA256 hex "\n${text}")
  base64(hash ${hex})
  set(${result} "'sha256-${hash}'" PARENT_SCOPE)
endfunction()

# make_page(FILE SKELETON NAME COLUMNS): SKELETON is the base name of the page and of its script.
function(make_page file skeleton name columns)
  file(READ ${source}/${skeleton}.html page)
  file(READ ${source}/style.css style)
  file(READ ${source}/fence.js fence)
  file(READ ${source}/${skeleton}.js script)
  string(PREPEND script "${fence}")
  hash_of(script_hash "${script}")
  hash_of(style_hash "${style}")
  string(CONCAT policy "default-src 'none'; script-src ${script_hash}; style-src ${style_hash}; "
                       "base-uri 'none'; form-action 'none'")
  string(REPLACE "@policy@" "${policy}" page "${page}")
  string(REPLACE "@name@" "${name}" page "${page}")
  string(REPLACE "@columns@" "${columns}" page "${page}")
  string(REPLACE "@style@\n" "${style}" page "${page}")
  string(REPLACE "@script@\n" "${script}" page "${page}")
  if(NOT CHECK)
    file(WRITE ${FOLDER}/${file} "${page}")
    return()
  endif()
  set(found "")
  if(EXISTS ${FOLDER}/${file})
    file(READ ${FOLDER}/${file} found)
  endif()
  if(NOT found STREQUAL page)
    message(SEND_ERROR "${FOLDER}/${file}: differs from template/source; build again")
  endif()
endfunction()

# "when" marks a date, "lines" values with breaks between them.
make_page(CallHistory.html table "Call history"
          [[<th>Name</th><th>Number</th><th class="when">Date</th><th>Type</th><th>Length</th>]])
make_page(Notes.html table "Notes" [[<th>Title</th><th class="when">Date</th><th>Content</th>]])
string(CONCAT contact_columns
       [[<th>Name</th><th class="lines">Phones</th><th>Mail</th><th>Address</th>]]
       [[<th>Web</th><th>Social</th><th>Company</th>]])
make_page(contacts.html table "Contacts" "${contact_columns}")
make_page(Sms.html chat "Messages" "")
make_page(WhatsApp.html chat "WhatsApp messages" "")
