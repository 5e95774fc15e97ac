# How the scripts beside this one speak; they source it from the project's folder. Everything goes to standard error.

program=$(basename "$0")

# The comment at the head of the script.
usage() { sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"; }

wrong_usage() { echo "$program: $1; scripts/$program --help lists what it takes" >&2; exit 2; }

# On a terminal, one line that follows the build's or the tests' own counts; standard input goes to the log as well.
follow() {
  local line
  while IFS= read -r line; do
    printf '%s\n' "$line" >>"$1"
    [[ $line =~ ^(\[[0-9]+/[0-9]+\]|\ *[0-9]+/[0-9]+\ Test) ]] && printf '\r%.100s\e[K' "$line" >&2
  done
  printf '\r\e[K' >&2
}

# step WHAT LOG COMMAND...: says what begins and where its log is, and appends the command's output to the log.
step() {
  local what=$1 log=$2 status
  shift 2
  echo "$program: $what (log: $log)" >&2
  mkdir -p "$(dirname "$log")"
  if [ -t 2 ]; then
    "$@" 2>&1 | follow "$log"
    return "${PIPESTATUS[0]}"
  fi
  "$@" >>"$log" 2>&1
}

# build PRESET [TARGET]: configures and builds, or says what went wrong and fails.
build() {
  local preset=$1 log=build/$1-build.log
  rm -f "$log"
  step "configuring the preset $preset" "$log" cmake --preset "$preset" &&
    step "building the preset $preset" "$log" cmake --build --preset "$preset" ${2:+--target "$2"} && return
  { grep -E -A8 'error:|FAILED:|CMake Error' "$log" || tail -n 20 "$log"; } | head -n 60 >&2
  echo "$program: the preset $preset cannot be built" >&2
  return 1
}
