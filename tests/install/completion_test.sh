# completion_test.sh GENOSTAT GENOSTAT-ANALYSIS: asks the installed completions as an interactive bash would.
failed=0
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
source "$1"
source "$2"
cd "$folder" || exit 1
mkdir 'sub folder'
touch 'reads one.fastq' run.syntax

# expect ANSWERS WORD...: ANSWERS are joined by commas; the last word is the one being typed.
expect() {
  local expected=$1 specification answer
  shift
  COMP_WORDS=("$@")
  COMP_CWORD=$(($# - 1))
  specification=$(complete -p "$1") || failed=1
  [[ $specification =~ -F\ ([a-z_]+) ]] && "${BASH_REMATCH[1]}"
  answer=$(printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd,)
  [ "$answer" = "$expected" ] || { echo "$*: expected $expected, got $answer"; failed=1; }
}

expect run genostat ru
expect --version genostat --v
expect run.syntax genostat run ru
expect 'sub folder' genostat run --temp s
expect html,json,text genostat run --output ''
expect json genostat run --output = j
expect html,json,text genostat run x.syntax --output =
expect --command-line-mode,--csv genostat run --c
expect 'reads one.fastq,run.syntax,sub folder' genostat-analysis qc --phred 33 ''
expect 33,64 genostat-analysis qc --phred ''
expect illumina genostat-analysis qc x.fq --adapter i
expect '' genostat-analysis qc --threads ''
exit $failed
