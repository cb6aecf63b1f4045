# Completion of orvandel-cli for fish.

set -l commands backups scan recover files domains verify
set -l none "not __fish_seen_subcommand_from $commands"
set -l any "__fish_seen_subcommand_from $commands"
set -l reads "__fish_seen_subcommand_from scan recover files domains verify"
set -l recover "__fish_seen_subcommand_from recover"
set -l files "__fish_seen_subcommand_from files"

complete -c orvandel-cli -f
complete -c orvandel-cli -n $none -a backups -d 'List the backups in a folder'
complete -c orvandel-cli -n $none -a scan -d 'Count the content of a backup'
complete -c orvandel-cli -n $none -a recover -d 'Recover the content of a backup'
complete -c orvandel-cli -n $none -a files -d 'List or extract the files of a backup'
complete -c orvandel-cli -n $none -a domains -d 'List the domains of a backup'
complete -c orvandel-cli -n $none -a verify -d 'Check the files of a backup'
complete -c orvandel-cli -n $any -a '(__fish_complete_directories)'
complete -c orvandel-cli -s h -l help -d 'Show a summary'
complete -c orvandel-cli -s v -l version -d 'Show the version'
complete -c orvandel-cli -n $any -l json -d 'Print JSON'
complete -c orvandel-cli -n $any -s q -l quiet -d 'Show no progress and no copied files'
complete -c orvandel-cli -n $reads -l password-file -r -F -d 'Read the password from a file'
complete -c orvandel-cli -n $reads -l password-stdin -d 'Read the password from standard input'
complete -c orvandel-cli -n $reads -l force -d 'Decrypt even with too little space'
complete -c orvandel-cli -n '__fish_seen_subcommand_from scan' -l manifest -d 'Add every entry of the manifest'
complete -c orvandel-cli -n $files -l domain -x -d 'Only entries of this domain'
complete -c orvandel-cli -n $files -l newer -x -d 'Only entries modified since this date'
complete -c orvandel-cli -n $files -l larger -x -d 'Only files of more bytes'
complete -c orvandel-cli -n $files -l missing -d 'Only files that the backup lacks'
complete -c orvandel-cli -n $files -l names -d 'Print names only'
complete -c orvandel-cli -n $files -l count -d 'Print only the number of entries'
complete -c orvandel-cli -n $files -l to -x -a '(__fish_complete_directories)' -d 'Extract into this folder'
complete -c orvandel-cli -n $files -l replace -d 'Replace files that exist'
complete -c orvandel-cli -n $files -l resume -d 'Complete an interrupted extraction'
complete -c orvandel-cli -n $recover -l no-index -d 'Write no front page'
complete -c orvandel-cli -n $recover -l no-times -d 'Leave copies with the time of copying'
complete -c orvandel-cli -n $recover -l only -x -d 'Recover only these categories' \
    -a '"Camera Roll" "Photo Stream" "App Photos" "App Videos" Message "Messages Attachments" Contacts "Call History" Notes WhatsApp "WhatsApp Attachments"'
