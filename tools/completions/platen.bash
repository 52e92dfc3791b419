# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Completes the command platen in bash 4.2 and later; needs nothing but bash.

# What may follow the command, into the variables of _platen: its commands, its options, and which
# of its arguments are files.
_platen_syntax() { # COMMAND, "queue add"; "" for platen itself
  local server='--server --timeout --json'
  local settings='--info --location --shared --not-shared --accepting --rejecting --allow --deny'
  commands='' options='' files=''
  case $1 in
  '')
    commands='attributes print dump diff queues default pause resume purge queue devices jobs job
      hold release restart cancel move watch subscriptions subscribe renew unsubscribe'
    options='--version'
    ;;
  attributes) options='--key --save --timeout --width --json' ;;
  print) options='--format --name --wait --quiet --timeout --json' files='2' ;;
  dump) options='--request --response --archive --key --width --json' files='1' ;;
  diff) options='--ignore --timeout --width --json' files='1 2' ;;
  queues)
    options="--local --remote --color --grayscale --default --requiring-authentication --shared
      --not-shared $server"
    ;;
  queue) commands='add modify remove' ;;
  'queue add') options="$settings $server" ;;
  'queue modify') options="--device $settings $server" ;;
  jobs) options="--completed --all --mine --limit $server" ;;
  watch) options="--events --interval $server" ;;
  subscribe) options="--events --job --lease --recipient $server" ;;
  renew) options="--lease $server" ;;
  *) options=$server ;;
  esac
  options+=' --help'
}

# What stands behind an option, into `value`: file, events, other, or "" for a flag.
_platen_value() { # OPTION
  case $1 in
  --save) value='file' ;;
  --events) value='events' ;;
  --server | --timeout | --width | --key | --format | --name | --ignore | --device | --info | \
    --location | --allow | --deny | --limit | --interval | --job | --lease | --recipient)
    value='other'
    ;;
  *) value='' ;;
  esac
}

# The words up to the cursor, into `words`. Readline cuts them at : and =, which stand in URIs and
# between an option and its value.
_platen_words() {
  local i piece joins=''
  words=()
  for ((i = 1; i <= COMP_CWORD; i++)); do
    piece=${COMP_WORDS[i]}
    if ((i > 1)) && [[ $joins || $piece == [:=]* ]]; then
      words[${#words[@]} - 1]+=$piece
    else
      words+=("$piece")
    fi
    [[ $piece == *[:=] ]] && joins=1 || joins=''
  done
}

# Files whose names begin with the text, each behind the prefix.
_platen_files() { # TEXT PREFIX
  local name
  while IFS= read -r name; do
    COMPREPLY+=("$2$name")
  done < <(compgen -f -- "$1")
  # For slashes behind folders, for blanks in names and for names that are quoted already.
  compopt -o filenames -o default 2>/dev/null
}

# Candidates for the value of an option, each behind the prefix.
_platen_values() { # KIND TEXT PREFIX
  local events='job-created job-state-changed job-completed job-stopped job-progress
    job-config-changed printer-state-changed printer-stopped printer-restarted printer-shutdown
    printer-config-changed printer-media-changed printer-finishings-changed
    printer-queue-order-changed'
  local list=${2%"${2##*,}"}
  case $1 in
  file) _platen_files "$2" "$3" ;;
  events) mapfile -t COMPREPLY < <(compgen -P "$3$list" -W "$events" -- "${2#"$list"}") ;;
  esac
}

_platen() {
  local words commands options files value='' word command='' position=1 literal=''
  _platen_words
  _platen_syntax ''
  local current=${words[${#words[@]} - 1]} piece=${COMP_WORDS[COMP_CWORD]}
  for word in "${words[@]:0:${#words[@]}-1}"; do
    if [[ $value ]]; then
      value=''
    elif [[ ! $literal && $word == -- ]]; then
      literal=1
    elif [[ ! $literal && $word == -?* ]]; then
      _platen_value "$word"
    elif [[ " ${commands//$'\n'/ } " == *" $word "* ]]; then
      command+=${command:+ }$word
      _platen_syntax "$command"
    else
      ((position++))
    fi
  done

  COMPREPLY=()
  if [[ $value ]]; then
    _platen_values "$value" "$current" ''
  elif [[ ! $literal && $current == --*=* ]]; then
    _platen_value "${current%%=*}"
    _platen_values "$value" "${current#*=}" "${current%%=*}="
  elif [[ ! $literal && $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  elif [[ $commands ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$current")
  elif [[ " $files " == *" $position "* ]]; then
    _platen_files "$current" ''
  fi

  # Readline wants only what it has not cut off.
  [[ $piece != [:=] ]] || piece=''
  COMPREPLY=("${COMPREPLY[@]#"${current%"$piece"}"}")
}

complete -F _platen platen
