# Completion of orvandel-cli for bash.

_orvandel_cli_categories="Camera Roll
Photo Stream
App Photos
App Videos
Message
Messages Attachments
Contacts
Call History
Notes
WhatsApp
WhatsApp Attachments"

_orvandel_cli() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command="" word options
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $word in backups | scan | recover | files | domains | verify) command=$word; break ;; esac
  done

  COMPREPLY=()
  case $previous in
    --password-file)
      compopt -o filenames
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      return
      ;;
    --to)
      compopt -o filenames
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      return
      ;;
    --domain | --newer | --larger) return ;;
    --only)
      local IFS=$'\n'
      mapfile -t COMPREPLY < <(compgen -W "$_orvandel_cli_categories" -- "${current#[\"\']}")
      COMPREPLY=("${COMPREPLY[@]/#/\"}")
      COMPREPLY=("${COMPREPLY[@]/%/\"}")
      return
      ;;
  esac
  case $command in
    "") options="--help --version" ;;
    backups) options="--help --version --json --quiet" ;;
    scan) options="--help --version --json --quiet --manifest --password-file --password-stdin --force" ;;
    recover) options="--help --version --json --quiet --only --no-index --no-times --password-file --password-stdin --force" ;;
    files)
      options="--help --version --json --quiet --domain --newer --larger --missing --names --count --to --replace"
      options+=" --resume --password-file --password-stdin --force"
      ;;
    domains | verify) options="--help --version --json --quiet --password-file --password-stdin --force" ;;
  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  elif [ -z "$command" ]; then
    mapfile -t COMPREPLY < <(compgen -W "backups scan recover files domains verify" -- "$current")
  else
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
  fi
}
complete -F _orvandel_cli orvandel-cli
