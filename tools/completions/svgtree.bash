# Completion of svgtree for bash.
_svgtree() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local options='--full --json --pretty --simplify --check --schema --help --version --query --explain --property
    --fonts --ids --links --stats --info --shapes --bbox --extract --force --path --jobs --language --font-number --style-dir
    --strict --no-external --refuse-element --refuse-property --limit --log'
  COMPREPLY=()
  case $previous in
    --extract | --style-dir) mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
    --limit)
      compopt -o nospace
      mapfile -t COMPREPLY < <(
        compgen -S = -W 'memory inflated recorded growth nodes depth expanded' -- "$current")
      ;;
    --log) mapfile -t COMPREPLY < <(compgen -W '0 3 4 5 6' -- "$current") ;;
    --query | --explain | --property | --path | --jobs | --language | --font-number | --refuse-*) ;;
    *)
      if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
      else
        mapfile -t COMPREPLY < <(
          compgen -d -- "$current"
          compgen -f -X '!*.svg' -- "$current"
          compgen -f -X '!*.svgz' -- "$current")
      fi
      ;;
  esac
}
complete -o filenames -F _svgtree svgtree
