# Completion of svgdraw for bash.
_svgdraw() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} ending
  local options='--width --height --scale --dpi --keep-aspect-ratio --background --format --id --help --version
    --style-dir --language --strict --limit --jobs'
  COMPREPLY=()
  case $previous in
    --style-dir) mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
    --limit)
      compopt -o nospace
      mapfile -t COMPREPLY < <(
        compgen -S = -W 'pixels painted memory inflated recorded growth nodes depth expanded' -- "$current")
      ;;
    -f | --format) mapfile -t COMPREPLY < <(compgen -W 'png pdf ps svg' -- "$current") ;;
    -[bdhisw] | --width | --height | --scale | --dpi | --background | --id | --language | --jobs) ;;
    *)
      if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
      else # drawings, and the pictures that they may replace
        mapfile -t COMPREPLY < <(
          compgen -d -- "$current"
          for ending in svg svgz png pdf ps; do compgen -f -X "!*.$ending" -- "$current"; done)
      fi
      ;;
  esac
}
complete -o filenames -F _svgdraw svgdraw
