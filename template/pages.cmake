# Generates the six pages from the parts in "source/", each with the hashes of its style and script in its policy.
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

set(chat_scripts fence long_list messages rich_text conversation chat_bar chat)
set(table_scripts fence long_list table_cells table_order table_rows table)
set(index_scripts fence long_list index)
set(chat_styles lines style chat)
set(table_styles lines style table)
set(index_styles style index)
# What a page may load: its own font; the recovered files beside it. On disk, a browser may give each file an origin of its
# own, which 'self' doesn't match.
set(chat_sources "font-src data:")
set(table_sources "font-src data:")
set(index_sources "img-src 'self' file:; media-src 'self' file:")

# make_page(FILE SKELETON NAME SPECIAL): SKELETON is the base name of the page and of its style. SPECIAL is what differs
# between pages of a skeleton: the attributes of a conversation's body, the head cells of a table.
function(make_page file skeleton name special)
  file(READ ${source}/${skeleton}.html page)
  set(style "")
  foreach(part ${${skeleton}_styles})
    file(READ ${source}/${part}.css text)
    string(APPEND style "${text}")
  endforeach()
  set(script "")
  foreach(part ${${skeleton}_scripts})
    file(READ ${source}/${part}.js text)
    string(APPEND script "${text}")
  endforeach()
  hash_of(script_hash "${script}")
  hash_of(style_hash "${style}")
  string(CONCAT policy "default-src 'none'; script-src ${script_hash}; style-src ${style_hash}; "
                       "${${skeleton}_sources}; "
                       "base-uri 'none'; form-action 'none'")
  string(REPLACE "@policy@" "${policy}" page "${page}")
  string(REPLACE "@name@" "${name}" page "${page}")
  string(REPLACE "@special@" "${special}" page "${page}")
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

make_page(CallHistory.html table "Call history"
          [[<th>Name</th><th>Number</th><th>Date</th><th>Type</th><th>Length</th>]])
make_page(Notes.html table "Notes" [[<th>Title</th><th>Date</th><th>Content</th>]])
string(CONCAT contact_columns
       [[<th>Name</th><th>Phones</th><th>Mail</th><th>Address</th>]]
       [[<th>Web</th><th>Social</th><th>Company</th>]])
make_page(contacts.html table "Contacts" "${contact_columns}")
# In messages all texts of others are of one person; chats may be groups.
make_page(Sms.html chat "Messages" [[data-attachments="Message Attachments" data-one-sender]])
make_page(WhatsApp.html chat "WhatsApp messages" [[data-attachments="WhatsApp Attachments"]])
make_page(index.html index "" "")
